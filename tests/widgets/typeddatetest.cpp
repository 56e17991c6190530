#include "widgets/typeddate.h"

#include "support/coretest.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// A test builds its tables once, at its start.
// clazy:excludeall=non-pod-global-static
const QDate before(2026, 11, 22);

} // namespace

class TypedDateTest final : public CoreTest
{
    Q_OBJECT
private slots:
    void readsWhatWasTyped_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("first");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<int>("part");
        QTest::newRow("nothing") << QString() << 1 << before << 1;
        QTest::newRow("half a day") << u"0"_s << 0 << QDate(2026, 11, 1) << 0;
        QTest::newRow("a day of one digit") << u"5"_s << 0 << QDate(2026, 11, 5) << 0;
        QTest::newRow("a whole day") << u"05"_s << 0 << QDate(2026, 11, 5) << 1;
        QTest::newRow("a separator after it") << u"05/"_s << 0 << QDate(2026, 11, 5) << 1;
        QTest::newRow("a separator twice") << u"05//"_s << 0 << QDate(2026, 11, 5) << 1;
        QTest::newRow("a separator instead") << u"5/"_s << 0 << QDate(2026, 11, 5) << 1;
        QTest::newRow("a separator before") << u"/5"_s << 0 << QDate(2026, 11, 5) << 0;
        QTest::newRow("day and month") << u"0503"_s << 0 << QDate(2026, 3, 5) << 2;
        QTest::newRow("half a year") << u"05032"_s << 0 << QDate(2002, 3, 5) << 2;
        QTest::newRow("half a year of four digits") << u"0503202"_s << 0 << QDate(2002, 3, 5) << 2;
        QTest::newRow("a whole date") << u"050327"_s << 0 << QDate(2027, 3, 5) << 2;
        QTest::newRow("more than a date") << u"0503279"_s << 0 << QDate() << 0;
        QTest::newRow("more than a long date") << u"050320279"_s << 0 << QDate() << 0;
        QTest::newRow("the month alone") << u"03"_s << 1 << QDate(2026, 3, 22) << 2;
        QTest::newRow("month and year") << u"0327"_s << 1 << QDate(2027, 3, 22) << 2;
        QTest::newRow("month and long year") << u"03/2027"_s << 1 << QDate(2027, 3, 22) << 2;
        QTest::newRow("month, year and more") << u"03/27/"_s << 1 << QDate(2026, 12, 3) << 2;
        QTest::newRow("the year alone") << u"27"_s << 2 << QDate(2027, 11, 22) << 2;
        QTest::newRow("the long year alone") << u"2027"_s << 2 << QDate(2027, 11, 22) << 2;
        QTest::newRow("a date from the year on") << u"050327"_s << 2 << QDate(2027, 3, 5) << 2;
        QTest::newRow("a day like a century, from the year on")
            << u"200327"_s << 2 << QDate(2027, 3, 20) << 2;
        QTest::newRow("a last day of no such month") << u"31"_s << 0 << QDate(2026, 11, 30) << 1;
        QTest::newRow("no leap year") << u"290227"_s << 0 << QDate(2027, 2, 28) << 2;
        QTest::newRow("a year of the last century") << u"05/03/1926"_s << 0 << QDate(1926, 3, 5) << 2;
    }

    void readsWhatWasTyped()
    {
        QFETCH(QString, typed);
        QFETCH(int, first);
        QFETCH(QDate, date);
        QFETCH(int, part);

        const std::optional<TypedDate> read = typedDate(typed, first, before);

        QCOMPARE(read.has_value(), date.isValid());
        QCOMPARE(read.value_or(TypedDate()).date, date);
        QCOMPARE(read.value_or(TypedDate()).part, part);
    }
};

NUBARIA_CORE_TEST_MAIN(TypedDateTest)
#include "typeddatetest.moc"
