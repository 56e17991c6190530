#include "app/singleinstancechecker.h"
#include "support/process.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QScopeGuard>

#include <algorithm>
#ifndef Q_OS_WIN
#include <sys/socket.h>
#include <unistd.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace {

QString program()
{
    return QStringLiteral(NUBARIA_PROGRAM);
}

} // namespace

class SingleInstanceCheckerCopiesTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void aSecondStartEndsAndTheFirstStays()
    {
        Session session(program());
        QProcess &first = session.start();
        QTRY_COMPARE_WITH_TIMEOUT(session.listener(), first.processId(), patience);

        for (int start = 0; start < 3; ++start) {
            QProcess &second = session.start();
            QVERIFY(endsWell(second));
            QCOMPARE(second.readAll(), QByteArray());
            QCOMPARE(session.listener(), first.processId());
        }

        QCOMPARE(session.runningCopies(), 1);
        QVERIFY(session.hasBuiltAWindow());
        QCOMPARE(session.markers().size(), 1);
    }

    void manyStartsAtOnceLeaveOneCopy()
    {
        Session session(program());
        constexpr int starts = 20;
        std::vector<QProcess *> copies;
        copies.reserve(starts);
        for (int start = 0; start < starts; ++start) {
            copies.push_back(&session.start());
        }

        QTRY_COMPARE_WITH_TIMEOUT(session.runningCopies(), 1, patience);

        const auto running = [](const QProcess *copy) {
            return copy->state() == QProcess::Running;
        };
        const auto survivor = std::find_if(copies.begin(), copies.end(), running);
        QTRY_COMPARE_WITH_TIMEOUT(session.listener(), (*survivor)->processId(), patience);
        QCOMPARE(std::count_if(copies.begin(), copies.end(), running), 1);
        copies.erase(survivor);
        for (QProcess *copy : copies) {
            QVERIFY(endsWell(*copy));
        }
    }

    void startsAgainAfterAKill_data()
    {
        QTest::addColumn<int>("signal");
        QTest::addColumn<bool>("markerFileLost");
        QTest::newRow("crash") << SIGKILL << false;
        QTest::newRow("crash, then cleaned temporary files") << SIGKILL << true;
        QTest::newRow("asked to end") << SIGTERM << false;
    }

    void startsAgainAfterAKill()
    {
        QFETCH(int, signal);
        QFETCH(bool, markerFileLost);
        Session session(program());

        for (int crash = 0; crash < 4; ++crash) {
            QProcess &killed = session.start();
            QTRY_COMPARE_WITH_TIMEOUT(session.listener(), killed.processId(), patience);
            endBySignal(killed, signal);
            QVERIFY(!markerFileLost || session.removeMarkerFile());
        }
        QProcess &next = session.start();

        QTRY_COMPARE_WITH_TIMEOUT(session.listener(), next.processId(), patience);
        QVERIFY(endsWell(session.start()));
        QCOMPARE(session.runningCopies(), 1);
    }

    void anOrderlyEndLeavesNoMarkerOfCrashedCopies()
    {
        Session session(program());
        QProcess &killed = session.start();
        QTRY_COMPARE_WITH_TIMEOUT(session.listener(), killed.processId(), patience);
        endBySignal(killed, SIGKILL);
        QCOMPARE(session.markers().size(), 1);

        {
            const SingleInstanceChecker last;
            QVERIFY(!last.isAlreadyRunning());
            QCOMPARE(session.markers().size(), 1);
        }

        QCOMPARE(session.markers(), QList<int>());
    }

    void aSecondStartEndsWhileTheFirstIsNotListeningYet()
    {
        Session session(program());
        const SingleInstanceChecker first;

        QProcess &second = session.start();

        QVERIFY(endsWell(second));
        QCOMPARE(second.readAll(), QByteArray());
        QVERIFY(!session.hasBuiltAWindow());
        QVERIFY(!QFileInfo::exists(session.socketPath()));
    }

#ifndef Q_OS_WIN
    void aSecondStartGivesUpOnASocketThatDoesNotAnswer()
    {
        Session session(program());
        const SingleInstanceChecker first;
        const int silent = boundSocket(session.socketPath());
        const auto cleanUp = qScopeGuard([silent] { close(silent); });
        // One who waits is all that it has room for, and nobody is ever let in.
        QCOMPARE(listen(silent, 0), 0);
        QLocalSocket waiting;
        waiting.connectToServer(session.socketPath());
        QVERIFY(waiting.waitForConnected());
        QElapsedTimer time;
        time.start();

        QProcess &second = session.start();

        QVERIFY(endsWell(second));
        QVERIFY2(time.elapsed() < 5000, "it must give up after 200 ms");
        QCOMPARE(second.readAll(), QByteArray());
        QVERIFY(!session.hasBuiltAWindow());
    }
#endif

    void aSecondStartSendsFocusAndHangsUp()
    {
        Session session(program());
        const SingleInstanceChecker first;
        QLocalServer server;
        QVERIFY(server.listen(u"QuenoliIPC"_s));

        QProcess &second = session.start();

        QVERIFY(server.waitForNewConnection(patience));
        QLocalSocket *connection = server.nextPendingConnection();
        QTRY_COMPARE_WITH_TIMEOUT(connection->state(), QLocalSocket::UnconnectedState, patience);
        QCOMPARE(connection->readAll(), QByteArray("focus"));
        QVERIFY(endsWell(second));
        QVERIFY(!server.hasPendingConnections());
        QVERIFY(!session.hasBuiltAWindow());
    }

    void aSecondStartBringsTheHiddenWindowBack()
    {
        Session session(program());
        const SingleInstanceChecker first;
        MainWindow window;
        QWidget other;
        other.show();
        QTRY_VERIFY(other.isActiveWindow());

        QProcess &second = session.start();

        QTRY_VERIFY_WITH_TIMEOUT(window.isVisible(), patience);
        QTRY_VERIFY(window.isActiveWindow());
        QVERIFY(endsWell(second));
        QVERIFY(!session.hasBuiltAWindow());
    }

    void aCopyThatCannotListenRunsAndStaysTheOnlyOne()
    {
        Session session(program());
        QVERIFY(QDir().mkpath(session.socketPath() + "/ocupado"_L1));
        QProcess &first = session.start();
        QTRY_VERIFY_WITH_TIMEOUT(session.hasBuiltAWindow(), patience);

        QVERIFY(endsWell(session.start()));

        QCOMPARE(first.state(), QProcess::Running);
        QVERIFY(QFileInfo(session.socketPath() + "/ocupado"_L1).isDir());
    }
};

NUBARIA_TEST_MAIN(SingleInstanceCheckerCopiesTest)
#include "singleinstancecheckercopiestest.moc"
