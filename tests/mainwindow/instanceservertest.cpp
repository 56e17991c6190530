#include "support/messageboxes.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QDir>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QScopeGuard>
#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

namespace {

const QLocalServer &serverOf(const MainWindow &window)
{
    const auto *server = window.findChild<QLocalServer *>(QString(), Qt::FindDirectChildrenOnly);
    if (!server) {
        qFatal("the window has no server");
    }
    return *server;
}

} // namespace

class InstanceServerTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        WindowTest::init();
        QFile::remove(serverSocket());
    }

    void listensForFurtherStartsOfTheSameUser()
    {
        const MainWindow window;

        QVERIFY(serverOf(window).isListening());
        QCOMPARE(serverOf(window).serverName(), u"QuenoliIPC"_s);
        QCOMPARE(serverOf(window).socketOptions(), QLocalServer::UserAccessOption);
        const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::WriteGroup
            | QFileDevice::ExeGroup | QFileDevice::ReadOther | QFileDevice::WriteOther
            | QFileDevice::ExeOther;
        QVERIFY(QFileInfo::exists(serverSocket()));
        QCOMPARE(QFileInfo(serverSocket()).permissions() & others, QFileDevice::Permissions());
    }

    void takesTheSocketOfAKilledCopyOver()
    {
        QFile stale(serverSocket());
        QVERIFY(stale.open(QIODevice::WriteOnly));
        stale.close();

        const MainWindow window;

        QVERIFY(serverOf(window).isListening());
    }

    void startsInSilenceWhenItCannotListen()
    {
        QVERIFY(QDir().mkpath(serverSocket() + "/ocupado"_L1));
        const auto cleanUp = qScopeGuard([] { QDir(serverSocket()).removeRecursively(); });
        const MessageBoxes boxes;

        const MainWindow window;

        QVERIFY(!serverOf(window).isListening());
        QCOMPARE(boxes.shown().size(), 0);
        QVERIFY(traymessages::all().isEmpty());
    }

    void leavesNoSocketBehind()
    {
        {
            const MainWindow window;
            QVERIFY(QFileInfo::exists(serverSocket()));
        }

        QVERIFY(!QFileInfo::exists(serverSocket()));
    }

    void comesForwardOnAnyConnection()
    {
        MainWindow window;
        window.show();
        window.hide();

        QLocalSocket client;
        client.connectToServer(u"QuenoliIPC"_s);

        QTRY_VERIFY(window.isVisible());
        QTRY_VERIFY(window.isActiveWindow());
    }

    void keepsNoMoreThanAMessageOfAFlood_data()
    {
        QTest::addColumn<int>("bytes");
        QTest::newRow("a byte more") << 1025;
        QTest::newRow("a flood") << (1 << 20);
    }

    void keepsNoMoreThanAMessageOfAFlood()
    {
        QFETCH(int, bytes);
        const MainWindow window;
        QLocalSocket client;
        client.connectToServer(u"QuenoliIPC"_s);
        QTRY_COMPARE(serverOf(window).findChildren<QLocalSocket *>().size(), 1);
        const auto *socket = serverOf(window).findChildren<QLocalSocket *>().constFirst();
        QSignalSpy arrived(socket, &QLocalSocket::readyRead);

        client.write(QByteArray(bytes, 'x'));

        QTRY_COMPARE(client.bytesToWrite(), 0);
        QTRY_VERIFY(arrived.count() > 0);
        QTRY_COMPARE(socket->bytesAvailable(), 1024);
    }

    void forgetsAConnectionThatHasHungUp()
    {
        const MainWindow window;
        QLocalSocket client;
        client.connectToServer(u"QuenoliIPC"_s);
        QTRY_COMPARE(serverOf(window).findChildren<QLocalSocket *>().size(), 1);

        client.disconnectFromServer();

        QTRY_COMPARE(serverOf(window).findChildren<QLocalSocket *>().size(), 0);
    }
};

NUBARIA_TEST_MAIN(InstanceServerTest)
#include "instanceservertest.moc"
