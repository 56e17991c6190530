#include "support/home.h"
#include "support/loglines.h"
#include "support/patience.h"
#include "support/traymessages.h"
#include "support/updateserver.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QCheckBox>
#include <QDeadlineTimer>
#include <QMessageBox>
#include <QPropertyAnimation>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Leaves the first message box open until a tray message came, and answers it and later ones then.
class BoxHeldOpen final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BoxHeldOpen)
public:
    BoxHeldOpen()
        : m_limit(patience)
    {
        connect(&m_poll, &QTimer::timeout, this, &BoxHeldOpen::answerOpenBox);
        m_poll.start(1);
    }

    QList<TrayMessage> messagesMeanwhile() const { return m_messages; }

private:
    void answerOpenBox()
    {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (box && (m_limit.hasExpired() || !traymessages::all().isEmpty())) {
            m_messages = traymessages::all();
            box->reject();
        }
    }

    QDeadlineTimer m_limit;
    QTimer m_poll;
    QList<TrayMessage> m_messages;
};

} // namespace

class UpdateCheckStartTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void leavesAReplyThatNeverComes_data()
    {
        QTest::addColumn<UpdateServer::Silent>("silent");
        QTest::addColumn<QByteArray>("begunResponse");
        QTest::addColumn<int>("requests");

        QTest::newRow("no tunnel") << UpdateServer::Silent::BeforeTunnel << QByteArray() << 0;
        QTest::newRow("no handshake") << UpdateServer::Silent::BeforeHandshake << QByteArray() << 0;
        QTest::newRow("no answer") << UpdateServer::Silent::Never << QByteArray() << 1;
        QTest::newRow("half a body") << UpdateServer::Silent::Never
                                     << http::response(http::versionDocument("2.0.2028")).chopped(1) << 1;
    }

    void leavesAReplyThatNeverComes()
    {
        QFETCH(UpdateServer::Silent, silent);
        QFETCH(QByteArray, begunResponse);
        QFETCH(int, requests);
        UpdateServer server(u"good"_s, silent);
        const ReplyWatch replies;
        {
            MainWindow window;
            window.show();
            QTRY_COMPARE_WITH_TIMEOUT(server.tunnels().size(), 1, patience);
            QTRY_COMPARE_WITH_TIMEOUT(server.requests().size(), requests, patience);
            if (!begunResponse.isEmpty()) {
                server.answerWith(begunResponse);
            }
            QCOMPARE(replies.alive(), 1);
            QVERIFY(window.close());
        }

        QTRY_COMPARE_WITH_TIMEOUT(server.openConnections(), 0, patience);
        QCOMPARE(replies.made(), 1);
        QCOMPARE(replies.alive(), 0);
        QCOMPARE(traymessages::all(), QList<TrayMessage>());
    }

    void announcesANewerVersionWhileTheWindowIsHidden()
    {
        home::setPreference(u"changeClose"_s, true);
        UpdateServer server;
        const ReplyWatch replies;
        MainWindow window;
        window.show();
        window.close();
        QVERIFY(!window.isVisible());

        server.answerWith(http::response(http::versionDocument("2.0.2028")));

        QTRY_COMPARE_WITH_TIMEOUT(replies.released(), 1, patience);
        QCOMPARE(traymessages::all(), traymessages::announcement(u"2.0.2028"_s));
        QTRY_COMPARE_WITH_TIMEOUT(bannerOf(window), openBanner, patience);
        QVERIFY(!window.isVisible());
    }

    void announcesANewerVersionWhileTheTrayIconIsHidden()
    {
        UpdateServer server;
        const ReplyWatch replies;
        const MainWindow window;
        widget<QCheckBox>(window, "SimpleNotify")->setChecked(false);

        server.answerWith(http::response(http::versionDocument("2.0.2028")));

        QTRY_COMPARE_WITH_TIMEOUT(replies.released(), 1, patience);
        QList<TrayMessage> expected = traymessages::announcement(u"2.0.2028"_s);
        expected.first().iconVisible = false;
        QCOMPARE(traymessages::all(), expected);
    }

    void announcesANewerVersionBeforeTheTaskListIsLoaded()
    {
        home::blockTaskFile();
        expectFileError("No se pudo abrir rmc.json para reparar ids:", home::openError(QIODevice::ReadOnly));
        expectFileError("Failed to open file for reading:", home::openError(QIODevice::ReadOnly));
        UpdateServer server;
        server.answerWith(http::response(http::versionDocument("2.0.2028")));
        const BoxHeldOpen box;

        const MainWindow window;

        QCOMPARE(box.messagesMeanwhile(), traymessages::announcement(u"2.0.2028"_s));
        QTRY_COMPARE_WITH_TIMEOUT(bannerOf(window), openBanner, patience);
    }

    void checksWhateverTheCheckBoxSays()
    {
        UpdateServer server;
        server.answerWith(http::response(http::versionDocument("2.0.2027")));
        const ReplyWatch replies;
        MainWindow window;
        QTRY_COMPARE_WITH_TIMEOUT(replies.released(), 1, patience);
        widget<QCheckBox>(window, "NotifyUpdate")->setChecked(false);

        server.answerWith(http::response(http::versionDocument("2.0.2028")));
        callSlot(window, "checkVersion");

        QTRY_COMPARE_WITH_TIMEOUT(replies.released(), 2, patience);
        QCOMPARE(traymessages::all(), traymessages::announcement(u"2.0.2028"_s));
        QTRY_COMPARE_WITH_TIMEOUT(bannerOf(window), openBanner, patience);
    }
};

NUBARIA_TEST_MAIN(UpdateCheckStartTest)
#include "updatecheckstarttest.moc"
