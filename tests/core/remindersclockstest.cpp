#include "core/reminders.h"

#include "support/coretest.h"
#include "support/home.h"

#include <QDateTime>

#include <ctime>

using namespace Qt::Literals::StringLiterals;

namespace {

QJsonObject taskDue(QDate day)
{
    QJsonObject task = home::record(u"{a}"_s, u"Pagar"_s);
    task.insert(u"dateLimit"_s, day.toString(u"dd-MM-yyyy"));
    return task;
}

/// The process's time zone while it lives.
class TimeZone final
{
    Q_DISABLE_COPY_MOVE(TimeZone)
public:
    explicit TimeZone(const QByteArray &name)
        : m_before(qgetenv("TZ"))
    {
        change(name);
    }
    ~TimeZone() { change(m_before); }

private:
    static void change(const QByteArray &name)
    {
        qputenv("TZ", name);
        tzset();
    }

    QByteArray m_before;
};

} // namespace

/// Reminders over days on which clocks are changed.
class RemindersClocksTest final : public CoreTest
{
    Q_OBJECT
private slots:
    void countsFromTheFirstMomentWhereMidnightDoesNotExist_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QDate>("day");
        QTest::newRow("Santiago") << QByteArray("America/Santiago") << QDate(2026, 9, 6);
        QTest::newRow("Cairo") << QByteArray("Africa/Cairo") << QDate(2026, 4, 24);
    }

    void countsFromTheFirstMomentWhereMidnightDoesNotExist()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QDate, day);
        const TimeZone elsewhere(zone);
        QCOMPARE(day.startOfDay().time(), QTime(1, 0)); // else this system's zone data lacks the jump
        const QJsonArray tasks = {taskDue(day)};

        QCOMPARE(titlesDue(tasks, QDateTime(day.addDays(-1), QTime(14, 30))), QStringList(u"Pagar"_s));
        QCOMPARE(titlesDue(tasks, QDateTime(day.addDays(-3), QTime(23, 59))), QStringList());
        QCOMPARE(titlesDue(tasks, QDateTime(day.addDays(-2), QTime(1, 0))), QStringList(u"Pagar"_s));
        QCOMPARE(titlesDue(tasks, QDateTime(day, QTime(1, 0))), QStringList(u"Pagar"_s));
        QCOMPARE(titlesDue(tasks, QDateTime(day, QTime(1, 1))), QStringList());
    }

    void countsCalendarDaysAndNotHours_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QDate>("today");
        QTest::addColumn<QTime>("time");
        QTest::addColumn<int>("hours");
        QTest::newRow("longer, Santiago")
            << QByteArray("America/Santiago") << QDate(2026, 4, 3) << QTime(0, 0) << 49;
        QTest::newRow("longer, New York")
            << QByteArray("America/New_York") << QDate(2026, 10, 31) << QTime(0, 0) << 49;
        QTest::newRow("shorter, New York")
            << QByteArray("America/New_York") << QDate(2026, 3, 7) << QTime(23, 30) << 47;
    }

    void countsCalendarDaysAndNotHours()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QDate, today);
        QFETCH(QTime, time);
        QFETCH(int, hours);
        const TimeZone elsewhere(zone);
        const QDateTime now(today, time);
        QCOMPARE(now.secsTo(now.addDays(2)), hours * 3600); // else this system's zone data lacks the change

        QCOMPARE(titlesDue({taskDue(today.addDays(2))}, now), QStringList(u"Pagar"_s));
        QCOMPARE(titlesDue({taskDue(today.addDays(3))}, now), QStringList());
    }
};

NUBARIA_CORE_TEST_MAIN(RemindersClocksTest)
#include "remindersclockstest.moc"
