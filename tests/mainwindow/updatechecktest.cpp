#include "support/patience.h"
#include "support/qtversion.h"
#include "support/traymessages.h"
#include "support/updateserver.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QNetworkReply>
#include <QPropertyAnimation>
#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

namespace {

QList<TrayMessage> problem()
{
    return {{u"Aviso de actualización"_s, u"Hubo un problema al verificar la actualización."_s,
        QSystemTrayIcon::Information, 10000, true}};
}

/// How many tray messages there were when the window got another child, such as the banner's slide.
class MessagesAtNewChildren final : public QObject
{
    Q_DISABLE_COPY_MOVE(MessagesAtNewChildren)
public:
    explicit MessagesAtNewChildren(MainWindow &window) { window.installEventFilter(this); }
    ~MessagesAtNewChildren() override = default;

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::ChildAdded) {
            counts.append(traymessages::all().size());
        }
        return false;
    }

    QList<qsizetype> counts;
};

} // namespace

class UpdateCheckTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void asksTheServerOncePerWindow()
    {
        UpdateServer server;
        server.answerWith(http::response(http::versionDocument("2.0.2027")));
        const ReplyWatch replies;
        const MainWindow window;

        QTRY_COMPARE_WITH_TIMEOUT(replies.released(), 1, patience);

        QCOMPARE(replies.made(), 1);
        QCOMPARE(server.tunnels(), QList<QByteArray>{UpdateServer::host() + ":443"});
        QCOMPARE(server.plainRequests(), QList<QByteArray>());
        QCOMPARE(server.requests().size(), 1);
        const QStringList lines = QString::fromLatin1(server.requests().constFirst()).split("\r\n"_L1);
        QCOMPARE(lines.constFirst(), u"GET /updates/nubaria/version.json HTTP/1.1"_s);
        QVERIFY(
            lines.contains(qtversion::hostHeader() + ": "_L1 + QString::fromLatin1(UpdateServer::host())));
        // Qt's own headers only: nothing about the user.
        QStringList names;
        for (const QString &line : lines.mid(1)) {
            names.append(line.section(u':', 0, 0).toLower());
        }
        names.sort();
        QCOMPARE(names,
            (QStringList{
                u"accept-encoding"_s, u"accept-language"_s, u"connection"_s, u"host"_s, u"user-agent"_s}));
    }

    void announcesANewerVersion_data()
    {
        QTest::addColumn<QByteArray>("response");
        QTest::addColumn<QString>("version");

        QTest::newRow("2.0.2028") << http::response(http::versionDocument("2.0.2028")) << u"2.0.2028"_s;
        QTest::newRow("3") << http::response(http::versionDocument("3")) << u"3"_s;
        QTest::newRow("placeholders")
            << http::response(http::versionDocument("3 %1 <b>&amp;</b> ñ")) << u"3 %1 <b>&amp;</b> ñ"_s;
        QTest::newRow("in pieces") << http::chunkedResponse({R"({"version": "2.0)", R"(.2028")", "}"})
                                   << u"2.0.2028"_s;
        QTest::newRow("20 MB") << http::response(
            R"({"padding": ")" + QByteArray(20'000'000, 'x') + R"(", "version": "2.0.2028"})")
                               << u"2.0.2028"_s;
        QTest::newRow("redirected") << http::redirect(
            "https://" + UpdateServer::host() + "/elsewhere/version.json")
                                    << u"2.0.2029"_s;
    }

    void announcesANewerVersion()
    {
        QFETCH(QByteArray, response);
        QFETCH(QString, version);
        UpdateServer server;
        server.answerWith(response);
        server.answerWith(http::response(http::versionDocument("2.0.2029")));
        const ReplyWatch replies;
        const MainWindow window;
        QCOMPARE(bannerOf(window), closedBanner);

        QTRY_COMPARE_WITH_TIMEOUT(replies.released(), 1, patience);

        QCOMPARE(traymessages::all(), traymessages::announcement(version));
        QTRY_COMPARE_WITH_TIMEOUT(bannerOf(window), openBanner, patience);
        QCOMPARE(replies.made(), 1);
        QCOMPARE(replies.alive(), 0);
    }

    void slidesTheBannerInBeforeItAnnounces()
    {
        UpdateServer server;
        server.answerWith(http::response(http::versionDocument("2.0.2028")));
        const ReplyWatch replies;
        MainWindow window;
        const MessagesAtNewChildren children(window);

        QTRY_COMPARE_WITH_TIMEOUT(replies.released(), 1, patience);

        QCOMPARE(children.counts, QList<qsizetype>({0}));
        QCOMPARE(traymessages::all(), traymessages::announcement(u"2.0.2028"_s));
    }

    void hearsOfTheAnswerThroughTheReplyAlone_data()
    {
        QTest::addColumn<bool>("cutFromWindow");

        QTest::newRow("cut from the window") << true;
        QTest::newRow("cut from itself") << false;
    }

    // Whoever is the context of the connection is the one from whom it can be cut.
    void hearsOfTheAnswerThroughTheReplyAlone()
    {
        QFETCH(bool, cutFromWindow);
        UpdateServer server;
        const ReplyWatch replies;
        const MainWindow window;
        QTRY_COMPARE_WITH_TIMEOUT(server.requests().size(), 1, patience);
        QNetworkReply *reply = replies.first();
        QVERIFY(reply);
        const QSignalSpy finished(reply, &QNetworkReply::finished);
        const QObject *context = cutFromWindow ? static_cast<const QObject *>(&window) : reply;

        QCOMPARE(disconnect(reply, &QNetworkReply::finished, context, nullptr), !cutFromWindow);
        server.answerWith(http::response(http::versionDocument("2.0.2028")));

        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, patience);
        QCOMPARE(traymessages::all(),
            cutFromWindow ? traymessages::announcement(u"2.0.2028"_s) : QList<TrayMessage>());
    }

    void staysSilentWithoutANewerVersion_data()
    {
        QTest::addColumn<QByteArray>("body");

        QTest::newRow("2.0.2027") << http::versionDocument("2.0.2027");
        QTest::newRow("2.0.2026") << http::versionDocument("2.0.2026");
        QTest::newRow("2.0.10000") << http::versionDocument("2.0.10000");
        QTest::newRow("10.0.0") << http::versionDocument("10.0.0");
        QTest::newRow("empty") << http::versionDocument("");
        QTest::newRow("missing") << QByteArray(R"({"build": "9.9.9"})");
        QTest::newRow("empty object") << QByteArray("{}");
        QTest::newRow("number") << QByteArray(R"({"version": 3})");
        QTest::newRow("null") << QByteArray(R"({"version": null})");
        QTest::newRow("list") << QByteArray(R"({"version": ["3"]})");
        QTest::newRow("array") << QByteArray(R"([{"version": "3"}])");
        QTest::newRow("empty array") << QByteArray("[]");
    }

    void staysSilentWithoutANewerVersion()
    {
        QFETCH(QByteArray, body);
        UpdateServer server;
        server.answerWith(http::response(body));
        const ReplyWatch replies;
        const MainWindow window;

        QTRY_COMPARE_WITH_TIMEOUT(replies.released(), 1, patience);

        QCOMPARE(server.requests().size(), 1);
        QCOMPARE(traymessages::all(), QList<TrayMessage>());
        QCOMPARE(bannerOf(window), closedBanner);
        QCOMPARE(replies.alive(), 0);
    }

    void reportsAnUnusableAnswerOnce_data()
    {
        QTest::addColumn<QByteArray>("response");
        QTest::addColumn<bool>("hangUp");
        const QByteArray newer = http::versionDocument("2.0.2028");

        QTest::newRow("404") << http::response(newer, "404 Not Found") << false;
        QTest::newRow("500") << http::response(newer, "500 Internal Server Error") << false;
        QTest::newRow("empty") << http::response("") << false;
        QTest::newRow("not JSON") << http::response("<html>2.0.2028</html>") << false;
        QTest::newRow("JSON cut off") << http::response(newer.chopped(1)) << false;
        QTest::newRow("20 MB") << http::response(QByteArray(20'000'000, 'x')) << false;
        QTest::newRow("connection lost") << http::response(newer + "          ").chopped(5) << true;
    }

    void reportsAnUnusableAnswerOnce()
    {
        QFETCH(QByteArray, response);
        QFETCH(bool, hangUp);
        UpdateServer server;
        hangUp ? server.answerAndHangUp(response) : server.answerWith(response);
        const ReplyWatch replies;
        const MainWindow window;

        QTRY_COMPARE_WITH_TIMEOUT(replies.released(), 1, patience);

        QCOMPARE(server.requests().size(), 1);
        QCOMPARE(traymessages::all(), problem());
        QCOMPARE(bannerOf(window), closedBanner);
        QCOMPARE(replies.alive(), 0);
    }

    void distrustsCertificates_data()
    {
        QTest::addColumn<QString>("certificate");

        QTest::newRow("self-signed") << u"self-signed"_s;
        QTest::newRow("of another host") << u"wrong-host"_s;
        QTest::newRow("expired") << u"expired"_s;
    }

    void distrustsCertificates()
    {
        QFETCH(QString, certificate);
        UpdateServer server(certificate);
        server.answerWith(http::response(http::versionDocument("2.0.2028")));
        const ReplyWatch replies;
        const MainWindow window;

        QTRY_COMPARE_WITH_TIMEOUT(replies.released(), 1, patience);

        QCOMPARE(server.tunnels().size(), 1);
        QCOMPARE(server.requests(), QList<QByteArray>());
        QCOMPARE(traymessages::all(), problem());
        QCOMPARE(bannerOf(window), closedBanner);
        QCOMPARE(replies.alive(), 0);
    }

    void refusesARedirectToAnUnencryptedAddress()
    {
        UpdateServer server;
        server.answerWith(http::redirect("http://" + UpdateServer::host() + "/updates/nubaria/version.json"));
        server.answerWith(http::response(http::versionDocument("2.0.2028")));
        const ReplyWatch replies;
        const MainWindow window;

        QTRY_COMPARE_WITH_TIMEOUT(replies.released(), 1, patience);

        QCOMPARE(server.plainRequests(), QList<QByteArray>());
        QCOMPARE(server.requests().size(), 1);
        QCOMPARE(traymessages::all(), problem());
        QCOMPARE(bannerOf(window), closedBanner);
        QCOMPARE(replies.alive(), 0);
    }

    void reportsAnUnreachableServerOnce()
    {
        UpdateServer server;
        server.close();
        const ReplyWatch replies;
        const MainWindow window;

        QTRY_COMPARE_WITH_TIMEOUT(replies.released(), 1, patience);

        QCOMPARE(traymessages::all(), problem());
        QCOMPARE(bannerOf(window), closedBanner);
        QCOMPARE(replies.alive(), 0);
    }
};

NUBARIA_TEST_MAIN(UpdateCheckTest)
#include "updatechecktest.moc"
