#include "support/messageboxes.h"
#include "support/process.h"
#include "support/replaced.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QDir>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QScopeGuard>
#include <QWindow>

#ifndef Q_OS_WIN
#include <unistd.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace {

struct Alert
{
    QWidget *widget = nullptr;
    int milliseconds = -1;

    bool operator==(const Alert &other) const = default;
};

QList<Alert> &alerts()
{
    static QList<Alert> recorded;
    return recorded;
}

QList<QWidget *> &activated()
{
    static QList<QWidget *> recorded;
    return recorded;
}

// Notes when the window is shown, raised and activated.
class Movements final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Movements)
public:
    explicit Movements(QWidget &window) { window.installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::Show:
            seen.append(u"shown"_s);
            break;
        case QEvent::ZOrderChange:
            seen.append(u"raised"_s);
            break;
        case QEvent::WindowActivate:
            seen.append(u"activated"_s);
            break;
        default:
            break;
        }
        return false;
    }

    QStringList seen;
};

} // namespace

// Attention in the taskbar is nothing that the offscreen platform could show: this definition wins over Qt's.
void QApplication::alert(QWidget *widget, int duration)
{
    alerts().append({widget, duration});
}
NUBARIA_REPLACES("_ZN12QApplication5alertEP7QWidgeti");

// Of a window that Qt takes for active, activation shows nowhere; this does what Qt's own does.
void QWidget::activateWindow()
{
    activated().append(this);
    if (QWindow *handle = window()->windowHandle()) {
        handle->requestActivate();
    }
}
NUBARIA_REPLACES("_ZN7QWidget14activateWindowEv");

class InstanceTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        WindowTest::init();
        alerts().clear();
    }

    void anyConnectionBringsTheWindowBack_data()
    {
        QTest::addColumn<bool>("minimised");
        QTest::addColumn<QByteArray>("message");
        for (const bool minimised : {false, true}) {
            const char *state = minimised ? "minimised" : "hidden";
            QTest::addRow("%s, focus", state) << minimised << QByteArray("focus");
            QTest::addRow("%s, another text", state) << minimised << QByteArray("adiós\n");
            QTest::addRow("%s, nothing", state) << minimised << QByteArray();
        }
    }

    void anyConnectionBringsTheWindowBack()
    {
        QFETCH(bool, minimised);
        QFETCH(QByteArray, message);
        MainWindow window;
        QWidget other;
        window.show();
        minimised ? window.showMinimized() : window.hide();
        other.show();
        QTRY_VERIFY(other.isActiveWindow());

        QLocalSocket client;
        client.connectToServer(u"QuenoliIPC"_s);
        QVERIFY(client.waitForConnected());
        QCOMPARE(client.write(message), message.size());

        QTRY_VERIFY(window.isActiveWindow());
        QVERIFY(window.isVisible());
        QCOMPARE(window.windowState() & ~Qt::WindowActive, Qt::WindowStates());
        QCOMPARE(alerts(), QList<Alert>({{&window, 0}}));
    }

    void aConnectionThatHangsUpAtOnceWakesAsWell()
    {
        MainWindow window;
        {
            QLocalSocket client;
            client.connectToServer(u"QuenoliIPC"_s);
            QVERIFY(client.waitForConnected());
        }

        QTRY_VERIFY(window.isVisible());
        QTRY_VERIFY(window.isActiveWindow());
        QTRY_VERIFY(window.findChild<QLocalServer *>()->findChildren<QLocalSocket *>().isEmpty());
    }

    void everyConnectionWakesAnew()
    {
        MainWindow window;
        for (int start = 1; start <= 3; ++start) {
            window.hide();
            QLocalSocket client;
            client.connectToServer(u"QuenoliIPC"_s);

            QTRY_VERIFY(window.isVisible());
            QTRY_COMPARE(alerts().size(), start);
        }
    }

    void theMessageIsNotReadAndTheConnectionLastsUntilThePeerHangsUp()
    {
        const MainWindow window;
        const auto *server = window.findChild<QLocalServer *>();
        QLocalSocket client;
        client.connectToServer(u"QuenoliIPC"_s);
        QVERIFY(client.waitForConnected());
        client.write("focus");

        QTRY_COMPARE(alerts().size(), 1);
        const auto connections = server->findChildren<QLocalSocket *>();
        QCOMPARE(connections.size(), 1);
        QVERIFY(!server->hasPendingConnections());
        QTRY_COMPARE(connections.first()->bytesAvailable(), 5);
        QCOMPARE(client.state(), QLocalSocket::ConnectedState);
        client.disconnectFromServer();

        QTRY_VERIFY(server->findChildren<QLocalSocket *>().isEmpty());
    }

    void wakesAlsoWithoutAPendingConnection()
    {
        MainWindow window;

        callSlot(window, "handleNewInstanceConnection");

        QVERIFY(window.isVisible());
        QTRY_VERIFY(window.isActiveWindow());
        QCOMPARE(alerts(), QList<Alert>({{&window, 0}}));
    }

    void aWindowBehindOthersIsRaisedAndActivatedAsItIs()
    {
        MainWindow window;
        window.showMaximized();
        QWidget other;
        other.show();
        QTRY_VERIFY(other.isActiveWindow());
        Movements movements(window);

        callSlot(window, "handleNewInstanceConnection");

        QTRY_VERIFY(window.isActiveWindow());
        QVERIFY(window.isMaximized());
        QCOMPARE(movements.seen, QStringList({u"raised"_s, u"activated"_s}));
    }

    void restoreWindowBringsItBackWithoutFlashing_data()
    {
        QTest::addColumn<bool>("minimised");
        QTest::newRow("hidden") << false;
        QTest::newRow("minimised") << true;
    }

    void restoreWindowBringsItBackWithoutFlashing()
    {
        QFETCH(bool, minimised);
        MainWindow window;
        window.show();
        minimised ? window.showMinimized() : window.hide();
        QWidget other;
        other.show();
        QTRY_VERIFY(other.isActiveWindow());
        Movements movements(window);

        callSlot(window, "restoreWindow");

        QTRY_VERIFY(window.isActiveWindow());
        QVERIFY(window.isVisible());
        QVERIFY(!window.isMinimized());
        QVERIFY(movements.seen.contains(u"raised"_s));
        QVERIFY(alerts().isEmpty());
    }

    void restoreWindowActivatesAlsoWhatQtTakesForActive_data()
    {
        QTest::addColumn<bool>("minimised");
        QTest::newRow("active") << false;
        QTest::newRow("minimised a moment ago") << true;
    }

    void restoreWindowActivatesAlsoWhatQtTakesForActive()
    {
        QFETCH(bool, minimised);
        MainWindow window;
        window.show();
        QTRY_VERIFY(window.isActiveWindow());
        if (minimised) {
            window.showMinimized();
        }
        QVERIFY(window.isActiveWindow());
        activated().clear();

        callSlot(window, "restoreWindow");

        QCOMPARE(activated(), QList<QWidget *>({&window}));
    }

    void flashTaskbarIconOnlyFlashes()
    {
        MainWindow window;
        Movements movements(window);

        callSlot(window, "flashTaskbarIcon");

        QCOMPARE(alerts(), QList<Alert>({{&window, 0}}));
        QVERIFY(!window.isVisible());
        QCOMPARE(movements.seen, QStringList());
    }

#ifndef Q_OS_WIN // where a pipe ends with its process
    void theSocketOfAKilledCopyIsReplaced()
    {
        close(boundSocket(serverSocket()));
        QVERIFY(QFileInfo::exists(serverSocket()));
        MainWindow window;

        QLocalSocket client;
        client.connectToServer(u"QuenoliIPC"_s);

        QTRY_VERIFY(window.isVisible());
    }
#endif

    void aNameThatCannotBeListenedOnIsLeftAlone()
    {
        const QString occupant = serverSocket() + "/ocupado/carta.txt"_L1;
        const auto cleanUp = qScopeGuard([] { QDir(serverSocket()).removeRecursively(); });
        QVERIFY(QDir().mkpath(QFileInfo(occupant).path()));
        QFile letter(occupant);
        QVERIFY(letter.open(QIODevice::WriteOnly));
        const MessageBoxes boxes;
        {
            MainWindow window;
            window.show();

            QVERIFY(QTest::qWaitForWindowExposed(&window));
        }

        QVERIFY(QFileInfo(occupant).isFile());
        QVERIFY(boxes.shown().isEmpty());
        QVERIFY(traymessages::all().isEmpty());
    }
};

NUBARIA_TEST_MAIN(InstanceTest)
#include "instancetest.moc"
