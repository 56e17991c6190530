#include "core/reminders.h"

#include "support/coretest.h"
#include "support/home.h"

#include <QDateTime>

using namespace Qt::Literals::StringLiterals;

namespace {

QJsonObject dueTask(const QString &title, const QString &dateLimit)
{
    QJsonObject task = home::record(u"{%1}"_s.arg(title), title);
    task.insert(u"dateLimit"_s, dateLimit);
    return task;
}

} // namespace

class RemindersTest final : public CoreTest
{
    Q_OBJECT
private slots:
    void includesBothEndsOfTheTwoDays_data()
    {
        QTest::addColumn<QDateTime>("now");
        QTest::addColumn<QString>("dateLimit");
        QTest::addColumn<bool>("due");
        const auto at = [](const QString &moment) {
            return QDateTime::fromString(moment, u"yyyy-MM-dd HH:mm:ss.zzz");
        };
        const QDateTime midnight = at(u"2026-03-05 00:00:00.000"_s);
        const QDateTime afternoon = at(u"2026-03-05 14:30:00.000"_s);

        QTest::newRow("afternoon, yesterday") << afternoon << u"04-03-2026"_s << false;
        QTest::newRow("afternoon, today") << afternoon << u"05-03-2026"_s << false;
        QTest::newRow("afternoon, tomorrow") << afternoon << u"06-03-2026"_s << true;
        QTest::newRow("afternoon, in two days") << afternoon << u"07-03-2026"_s << true;
        QTest::newRow("afternoon, in three days") << afternoon << u"08-03-2026"_s << false;
        QTest::newRow("midnight, yesterday") << midnight << u"04-03-2026"_s << false;
        QTest::newRow("midnight, today") << midnight << u"05-03-2026"_s << true;
        QTest::newRow("midnight, the limit itself") << midnight << u"07-03-2026"_s << true;
        QTest::newRow("midnight, in three days") << midnight << u"08-03-2026"_s << false;
        QTest::newRow("a millisecond past midnight, today")
            << midnight.addMSecs(1) << u"05-03-2026"_s << false;
        QTest::newRow("a millisecond before midnight, the third day")
            << midnight.addMSecs(-1) << u"07-03-2026"_s << false;
        QTest::newRow("end of a month") << at(u"2026-04-29 09:00:00.000"_s) << u"01-05-2026"_s << true;
        QTest::newRow("end of a month, a day too far")
            << at(u"2026-04-29 09:00:00.000"_s) << u"02-05-2026"_s << false;
        QTest::newRow("end of a year") << at(u"2026-12-30 09:00:00.000"_s) << u"01-01-2027"_s << true;
        QTest::newRow("29 February") << at(u"2028-02-27 09:00:00.000"_s) << u"29-02-2028"_s << true;
        QTest::newRow("over 29 February") << at(u"2028-02-28 09:00:00.000"_s) << u"01-03-2028"_s << true;
        QTest::newRow("a 29 February that is none")
            << at(u"2026-02-27 09:00:00.000"_s) << u"29-02-2026"_s << false;
    }

    void includesBothEndsOfTheTwoDays()
    {
        QFETCH(QDateTime, now);
        QFETCH(QString, dateLimit);
        QFETCH(bool, due);
        QVERIFY(now.isValid());

        const QStringList titles = titlesDue({dueTask(u"Pagar"_s, dateLimit)}, now);

        QCOMPARE(titles, due ? QStringList(u"Pagar"_s) : QStringList());
    }

    void listsTheNextTwoDaysAtHalfPastTwo()
    {
        const QJsonArray tasks = {dueTask(u"D"_s, u"05-03-2026"_s), dueTask(u"D+3"_s, u"08-03-2026"_s),
            dueTask(u"D+2"_s, u"07-03-2026"_s), dueTask(u"D+1"_s, u"06-03-2026"_s)};

        const QStringList titles = titlesDue(tasks, QDateTime(QDate(2026, 3, 5), QTime(14, 30)));

        QCOMPARE(titles, QStringList({u"D+2"_s, u"D+1"_s}));
    }

    void skipsDatesThatDoNotParse_data()
    {
        QTest::addColumn<QJsonValue>("dateLimit");
        QTest::newRow("empty") << QJsonValue(QString());
        QTest::newRow("short") << QJsonValue(u"6-3-2026"_s);
        QTest::newRow("two-digit year") << QJsonValue(u"06-03-26"_s);
        QTest::newRow("slashes") << QJsonValue(u"06/03/2026"_s);
        QTest::newRow("the other way round") << QJsonValue(u"2026-03-06"_s);
        QTest::newRow("no such day") << QJsonValue(u"31-02-2026"_s);
        QTest::newRow("blanks around") << QJsonValue(u" 06-03-2026 "_s);
        QTest::newRow("a number") << QJsonValue(6032026);
        QTest::newRow("null") << QJsonValue(QJsonValue::Null);
        QTest::newRow("absent") << QJsonValue(QJsonValue::Undefined);
    }

    void skipsDatesThatDoNotParse()
    {
        QFETCH(QJsonValue, dateLimit);
        QJsonObject task = dueTask(u"Pagar"_s, QString());
        task.insert(u"dateLimit"_s, dateLimit);

        // At the epoch as well: an invalid date must not pass for one close to it.
        QCOMPARE(titlesDue({task}, QDateTime(QDate(2026, 3, 5), QTime(9, 0))), QStringList());
        QCOMPARE(titlesDue({task}, QDateTime::fromSecsSinceEpoch(0)), QStringList());
    }

    void keepsFileOrderAndEmptyTitles()
    {
        const QJsonArray tasks = {dueTask(u"Zeta"_s, u"06-03-2026"_s), dueTask(QString(), u"06-03-2026"_s),
            QJsonObject{{u"dateLimit"_s, u"07-03-2026"_s}}, dueTask(u"Alfa"_s, u"06-03-2026"_s), u"texto"_s};

        const QStringList titles = titlesDue(tasks, QDateTime(QDate(2026, 3, 5), QTime(9, 0)));

        QCOMPARE(titles, QStringList({u"Zeta"_s, QString(), QString(), u"Alfa"_s}));
    }

    void findsTheDueAmongTenThousand()
    {
        QJsonArray tasks;
        for (int i = 0; i < 10'000; ++i) {
            tasks.append(dueTask(QString::number(i), QDate(2000, 1, 1).addDays(i).toString(u"dd-MM-yyyy")));
        }
        const int march6 = static_cast<int>(QDate(2000, 1, 1).daysTo(QDate(2026, 3, 6)));

        const QStringList titles = titlesDue(tasks, QDateTime(QDate(2026, 3, 5), QTime(14, 30)));

        QCOMPARE(titles, QStringList({QString::number(march6), QString::number(march6 + 1)}));
    }
};

NUBARIA_CORE_TEST_MAIN(RemindersTest)
#include "reminderstest.moc"
