#include "core/updatecheck.h"
#include "support/coretest.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray documentOf(const QByteArray &version)
{
    return R"({"version": ")" + version + R"("})";
}

} // namespace

class UpdateCheckTest final : public CoreTest
{
    Q_OBJECT
private slots:
    void knowsItsAddresses()
    {
        const QString host = versionDocumentUrl().host();

        QVERIFY(!host.isEmpty());
        QCOMPARE(versionDocumentUrl().toString(), u"https://%1/updates/nubaria/version.json"_s.arg(host));
        QCOMPARE(updatePageUrl().toString(), u"https://%1/updates/nubaria/version"_s.arg(host));
        QCOMPARE(updatePageUrl().host(), host);
    }

    void readsThePublishedVersion_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<std::optional<QString>>("version");
        const std::optional<QString> nothing;
        const std::optional<QString> noText = QString();

        QTest::newRow("text") << documentOf("2.0.2028") << std::optional(u"2.0.2028"_s);
        QTest::newRow("text beyond ASCII") << documentOf("3.0 ñ") << std::optional(u"3.0 ñ"_s);
        QTest::newRow("blanks around") << documentOf(" 3 ") << std::optional(u" 3 "_s);
        QTest::newRow("empty text") << documentOf("") << noText;
        QTest::newRow("other keys") << QByteArray(R"({"build": "9", "version": "3", "x": []})")
                                    << std::optional(u"3"_s);
        QTest::newRow("other letter case") << QByteArray(R"({"Version": "3"})") << noText;
        QTest::newRow("nested key") << QByteArray(R"({"latest": {"version": "3"}})") << noText;
        QTest::newRow("number") << QByteArray(R"({"version": 3})") << noText;
        QTest::newRow("true") << QByteArray(R"({"version": true})") << noText;
        QTest::newRow("null") << QByteArray(R"({"version": null})") << noText;
        QTest::newRow("list") << QByteArray(R"({"version": ["3"]})") << noText;
        QTest::newRow("object") << QByteArray(R"({"version": {"version": "3"}})") << noText;
        QTest::newRow("empty object") << QByteArray("{}") << noText;
        QTest::newRow("array") << QByteArray(R"([{"version": "3"}])") << noText;
        QTest::newRow("empty array") << QByteArray("[]") << noText;
        QTest::newRow("no bytes") << QByteArray() << nothing;
        QTest::newRow("bare text") << QByteArray("\"3\"") << nothing;
        QTest::newRow("markup") << QByteArray("<html>3</html>") << nothing;
        QTest::newRow("cut off") << QByteArray(R"({"version": "3")") << nothing;
        QTest::newRow("two documents") << QByteArray(R"({"version": "3"} {"version": "3"})") << nothing;
        QTest::newRow("not UTF-8") << QByteArray("{\"version\": \"\xff\"}") << nothing;
    }

    void readsThePublishedVersion()
    {
        QFETCH(QByteArray, document);
        QFETCH(std::optional<QString>, version);

        QCOMPARE(publishedVersion(document), version);
    }

    void comparesVersionsAsText_data()
    {
        QTest::addColumn<QString>("published");
        QTest::addColumn<QString>("own");
        QTest::addColumn<bool>("newer");

        QTest::newRow("next") << u"2.0.2028"_s << u"2.0.2027"_s << true;
        QTest::newRow("higher first figure") << u"3"_s << u"2.0.2027"_s << true;
        QTest::newRow("same and more") << u"2.0.2027.1"_s << u"2.0.2027"_s << true;
        QTest::newRow("letter") << u"V1"_s << u"2.0.2027"_s << true;
        QTest::newRow("same") << u"2.0.2027"_s << u"2.0.2027"_s << false;
        QTest::newRow("previous") << u"2.0.2026"_s << u"2.0.2027"_s << false;
        QTest::newRow("same and less") << u"2.0.202"_s << u"2.0.2027"_s << false;
        QTest::newRow("more figures") << u"2.0.10000"_s << u"2.0.2027"_s << false;
        QTest::newRow("more figures at the start") << u"10.0.0"_s << u"2.0.2027"_s << false;
        QTest::newRow("leading blank") << u" 3"_s << u"2.0.2027"_s << false;
        QTest::newRow("empty") << QString() << u"2.0.2027"_s << false;
        QTest::newRow("small letter after capital") << u"2.0a"_s << u"2.0B"_s << true;
        QTest::newRow("capital before small letter") << u"2.0B"_s << u"2.0a"_s << false;
        QTest::newRow("code units, not characters") << u"\uff5e"_s << u"\U00010000"_s << true;
        QTest::newRow("no rules of a language") << u"ñ"_s << u"z"_s << true;
    }

    void comparesVersionsAsText()
    {
        QFETCH(QString, published);
        QFETCH(QString, own);
        QFETCH(bool, newer);

        QCOMPARE(isNewerVersion(published, own), newer);
    }
};

NUBARIA_CORE_TEST_MAIN(UpdateCheckTest)
#include "updatechecktest.moc"
