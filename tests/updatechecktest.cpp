#include "support/home.h"
#include "support/testmain.h"
#include "support/traymessages.h"
#include "support/updateserver.h"
#include "support/window.h"

#include <QPropertyAnimation>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int patience = 30000; // milliseconds, for a busy machine
constexpr QRect parkedBanner(-230, 595, 220, 90);
constexpr QRect shownBanner(10, 595, 220, 90);

QList<TrayMessage> announcement(const QString &version)
{
    return {{u"Nueva versión encontrada"_s,
        u"La actualización de la versión V"_s + version + u" está disponible para ser instalada."_s,
        QSystemTrayIcon::Information, 10000, true}};
}

QList<TrayMessage> problem()
{
    return {{u"Aviso de actualización"_s, u"Hubo un problema al verificar la actualización."_s,
        QSystemTrayIcon::Information, 10000, true}};
}

/// Where the banner stands; nowhere while it slides.
QRect bannerOf(const MainWindow &window)
{
    const bool slides = !window.findChildren<QPropertyAnimation *>().isEmpty();
    return slides ? QRect() : widget(window, "FrameUpdater")->geometry();
}

} // namespace

class UpdateCheckTest final : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        home::reset();
        traymessages::clear();
    }

    void asksTheServerOncePerWindow();
    void announcesANewerVersion_data();
    void announcesANewerVersion();
    void staysSilentWithoutANewerVersion_data();
    void staysSilentWithoutANewerVersion();
    void reportsAnUnusableAnswerOnce_data();
    void reportsAnUnusableAnswerOnce();
    void distrustsCertificates_data();
    void distrustsCertificates();
    void refusesARedirectToAnUnencryptedAddress();
    void reportsAnUnreachableServerOnce();
};

void UpdateCheckTest::asksTheServerOncePerWindow()
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
    QVERIFY(lines.contains("Host: "_L1 + QString::fromLatin1(UpdateServer::host())));
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

void UpdateCheckTest::announcesANewerVersion_data()
{
    QTest::addColumn<QByteArray>("response");
    QTest::addColumn<QString>("version");

    QTest::newRow("2.0.2028") << http::response(http::versionDocument("2.0.2028")) << u"2.0.2028"_s;
    QTest::newRow("3") << http::response(http::versionDocument("3")) << u"3"_s;
    QTest::newRow("placeholders") << http::response(http::versionDocument("3 %1 <b>&amp;</b> ñ"))
                                  << u"3 %1 <b>&amp;</b> ñ"_s;
    QTest::newRow("in pieces") << http::chunkedResponse({R"({"version": "2.0)", R"(.2028")", "}"})
                               << u"2.0.2028"_s;
    QTest::newRow("20 MB") << http::response(
        R"({"padding": ")" + QByteArray(20'000'000, 'x') + R"(", "version": "2.0.2028"})")
                           << u"2.0.2028"_s;
    QTest::newRow("redirected") << http::redirect(
        "https://" + UpdateServer::host() + "/elsewhere/version.json")
                                << u"2.0.2029"_s;
}

void UpdateCheckTest::announcesANewerVersion()
{
    QFETCH(QByteArray, response);
    QFETCH(QString, version);
    UpdateServer server;
    server.answerWith(response);
    server.answerWith(http::response(http::versionDocument("2.0.2029")));
    const ReplyWatch replies;
    const MainWindow window;
    QCOMPARE(bannerOf(window), parkedBanner);

    QTRY_COMPARE_WITH_TIMEOUT(replies.released(), 1, patience);

    QCOMPARE(traymessages::all(), announcement(version));
    QTRY_COMPARE_WITH_TIMEOUT(bannerOf(window), shownBanner, patience);
    QCOMPARE(replies.made(), 1);
    QCOMPARE(replies.alive(), 0);
}

void UpdateCheckTest::staysSilentWithoutANewerVersion_data()
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

void UpdateCheckTest::staysSilentWithoutANewerVersion()
{
    QFETCH(QByteArray, body);
    UpdateServer server;
    server.answerWith(http::response(body));
    const ReplyWatch replies;
    const MainWindow window;

    QTRY_COMPARE_WITH_TIMEOUT(replies.released(), 1, patience);

    QCOMPARE(server.requests().size(), 1);
    QCOMPARE(traymessages::all(), QList<TrayMessage>());
    QCOMPARE(bannerOf(window), parkedBanner);
    QCOMPARE(replies.alive(), 0);
}

void UpdateCheckTest::reportsAnUnusableAnswerOnce_data()
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

void UpdateCheckTest::reportsAnUnusableAnswerOnce()
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
    QCOMPARE(bannerOf(window), parkedBanner);
    QCOMPARE(replies.alive(), 0);
}

void UpdateCheckTest::distrustsCertificates_data()
{
    QTest::addColumn<QString>("certificate");

    QTest::newRow("self-signed") << u"self-signed"_s;
    QTest::newRow("of another host") << u"wrong-host"_s;
    QTest::newRow("expired") << u"expired"_s;
}

void UpdateCheckTest::distrustsCertificates()
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
    QCOMPARE(bannerOf(window), parkedBanner);
    QCOMPARE(replies.alive(), 0);
}

void UpdateCheckTest::refusesARedirectToAnUnencryptedAddress()
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
    QCOMPARE(bannerOf(window), parkedBanner);
    QCOMPARE(replies.alive(), 0);
}

void UpdateCheckTest::reportsAnUnreachableServerOnce()
{
    UpdateServer server;
    server.close();
    const ReplyWatch replies;
    const MainWindow window;

    QTRY_COMPARE_WITH_TIMEOUT(replies.released(), 1, patience);

    QCOMPARE(traymessages::all(), problem());
    QCOMPARE(bannerOf(window), parkedBanner);
    QCOMPARE(replies.alive(), 0);
}

NUBARIA_TEST_MAIN(UpdateCheckTest)
#include "updatechecktest.moc"
