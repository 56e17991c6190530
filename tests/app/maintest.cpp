#include "app/singleinstancechecker.h"
#include "support/replaced.h"
#include "support/windowtest.h"

#include "mainwindow/mainwindow.h"

#include <QApplication>
#include <QLocalServer>
#include <QLocalSocket>
#include <QNetworkProxy>
#include <QTest>
#include <QTimer>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;

/// The program's `main`, which is built under this name into the test.
int nubariaMain(int argc, char *argv[]);

namespace {

constexpr int loopResult = 7;

QStringList &socketCalls()
{
    static QStringList calls;
    return calls;
}

bool markerExists()
{
    return QSharedMemory(u"Quenoli"_s).attach();
}

/// One start of the program within the test, from the application object to its end.
class Start final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Start)
public:
    Start() { s_current = this; }
    ~Start() override { s_current = nullptr; }

    /// Runs the program, whose event loop ends at once with `loopResult`. The program's own result.
    static int run()
    {
        char name[] = "nubaria";
        char *arguments[] = {name, nullptr};
        return nubariaMain(1, arguments);
    }

    /// As soon as there is an application object.
    static void begin() { s_current->watch(); }

    bool hasListener = false; ///< whether somebody answers the start on the local socket
    QStringList moments; ///< the turning points, and whether the instance marker existed in each of them
    QStringList seen; ///< what got an event as a widget or a window
    bool windowWasVisible = false;
    Qt::FocusPolicy focusPolicy = Qt::StrongFocus;

private:
    void note(const QString &moment)
    {
        moments.append(moment + (markerExists() ? ", with the marker"_L1 : ", without the marker"_L1));
    }

    void watch()
    {
        note(u"application begins"_s);
        connect(qApp, &QObject::destroyed, this, [this] { note(u"application ends"_s); });
        qApp->installEventFilter(this);
        QTimer::singleShot(0, this, &Start::endLoop);
        if (hasListener) {
            (new QLocalServer(qApp))->listen(u"QuenoliIPC"_s);
        }
    }

    bool eventFilter(QObject *watched, QEvent *) override
    {
        if (watched->isWidgetType() || watched->isWindowType()) {
            seen.append(QString::fromLatin1(watched->metaObject()->className()));
        }
        auto *window = qobject_cast<MainWindow *>(watched);
        if (window && !m_window) {
            m_window = window;
            note(u"window begins"_s);
            connect(window, &QObject::destroyed, this, [this] { note(u"window ends"_s); });
        }
        return false;
    }

    void endLoop()
    {
        note(u"loop runs"_s);
        windowWasVisible = m_window && m_window->isVisible();
        focusPolicy = m_window ? m_window->focusPolicy() : Qt::StrongFocus;
        QCoreApplication::exit(loopResult);
    }

    static inline Start *s_current = nullptr;
    MainWindow *m_window = nullptr;
};

} // namespace

// How long the program is ready to wait, which no clock can tell exactly: these definitions win over Qt's.
bool QLocalSocket::waitForConnected(int msecs)
{
    socketCalls().append(u"connecting: %1 ms"_s.arg(msecs));
    return state() == ConnectedState;
}
NUBARIA_REPLACES("_ZN12QLocalSocket16waitForConnectedEi");

bool QLocalSocket::waitForBytesWritten(int msecs)
{
    socketCalls().append(u"writing: %1 ms"_s.arg(msecs));
    return false;
}
NUBARIA_REPLACES("_ZN12QLocalSocket19waitForBytesWrittenEi");

void QLocalSocket::disconnectFromServer()
{
    socketCalls().append(u"hung up"_s);
    abort();
}
NUBARIA_REPLACES("_ZN12QLocalSocket20disconnectFromServerEv");

class MainTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        WindowTest::init();
        socketCalls().clear();
    }

    void returnsWhatTheLoopEndsWith()
    {
        const Start start;

        QCOMPARE(Start::run(), loopResult);
    }

    void showsAWindowThatTakesNoFocus()
    {
        const Start start;

        Start::run();

        QVERIFY(start.windowWasVisible);
        QCOMPARE(start.focusPolicy, Qt::NoFocus);
    }

    void endsTheWindowBeforeTheMarkerAndThatBeforeTheApplication()
    {
        const Start start;

        Start::run();

        QCOMPARE(start.moments,
            QStringList({u"application begins, without the marker"_s, u"window begins, with the marker"_s,
                u"loop runs, with the marker"_s, u"window ends, with the marker"_s,
                u"application ends, without the marker"_s}));
    }

    void aFurtherStartWaits200MillisecondsAtMostAndShowsNothing_data()
    {
        QTest::addColumn<bool>("hasListener");
        QTest::addColumn<QStringList>("calls");
        QTest::newRow("the first copy listens")
            << true << QStringList({u"connecting: 200 ms"_s, u"writing: 200 ms"_s, u"hung up"_s});
        QTest::newRow("nobody listens") << false << QStringList(u"connecting: 200 ms"_s);
    }

    void aFurtherStartWaits200MillisecondsAtMostAndShowsNothing()
    {
        QFETCH(bool, hasListener);
        QFETCH(QStringList, calls);
        const SingleInstanceChecker first;
        Start second;
        second.hasListener = hasListener;

        QCOMPARE(Start::run(), 0);

        QCOMPARE(socketCalls(), calls);
        QCOMPARE(second.seen, QStringList());
        QCOMPARE(second.moments,
            QStringList({u"application begins, with the marker"_s, u"application ends, with the marker"_s}));
    }
};

// Without an application object of its own: the program makes one in every start.
int main(int argc, char *argv[])
{
    const Isolation isolation;
    // Nobody listens there, and nothing goes further.
    QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::HttpProxy, u"127.0.0.1"_s, 1));
    qAddPreRoutine(Start::begin);
    MainTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "maintest.moc"
