#include "mainwindow/reminders.h"

#include "support/failingopen.h"
#include "support/home.h"
#include "support/loglines.h"
#include "support/testmain.h"
#include "support/traymessages.h"
#include "support/window.h"

#include <QCheckBox>
#include <QTimeZone>

#include <ctime>

using namespace Qt::Literals::StringLiterals;

namespace {

QJsonObject dueTask(const QString &title, const QString &dateLimit)
{
    QJsonObject task = home::record(u"{%1}"_s.arg(title), title);
    task.insert(u"dateLimit"_s, dateLimit);
    return task;
}

// Two days ahead are announced on either side of a midnight that passes between writing and asking; one day
// is not.
QString dayFromToday(int days)
{
    return QDate::currentDate().addDays(days).toString(u"dd-MM-yyyy");
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

class RemindersTest final : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void includesBothEndsOfTheTwoDays_data();
    void includesBothEndsOfTheTwoDays();
    void listsTheNextTwoDaysAtHalfPastTwo();
    void skipsDatesThatDoNotParse_data();
    void skipsDatesThatDoNotParse();
    void countsFromTheFirstMomentWhereMidnightDoesNotExist_data();
    void countsFromTheFirstMomentWhereMidnightDoesNotExist();
    void keepsFileOrderAndEmptyTitles();
    void findsTheDueAmongTenThousand();

    void announcesCountAndTitlesInOneMessage();
    void announcesEmptyTitlesAsWell();
    void announcesAgainEachTime();
    void readsNothingWhenTheBoxIsUnchecked();
    void asksTheBoxAndNotTheStoredPreference();
    void saysNothingForAnEmptyList_data();
    void saysNothingForAnEmptyList();
    void onlyLogsAnUnreadableFile();
};

void RemindersTest::init()
{
    home::reset();
    traymessages::clear();
}

void RemindersTest::includesBothEndsOfTheTwoDays_data()
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
    QTest::newRow("a millisecond past midnight, today") << midnight.addMSecs(1) << u"05-03-2026"_s << false;
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

void RemindersTest::includesBothEndsOfTheTwoDays()
{
    QFETCH(QDateTime, now);
    QFETCH(QString, dateLimit);
    QFETCH(bool, due);
    QVERIFY(now.isValid());

    const QStringList titles = titlesDue({dueTask(u"Pagar"_s, dateLimit)}, now);

    QCOMPARE(titles, due ? QStringList(u"Pagar"_s) : QStringList());
}

void RemindersTest::listsTheNextTwoDaysAtHalfPastTwo()
{
    const QJsonArray tasks = {dueTask(u"D"_s, u"05-03-2026"_s), dueTask(u"D+3"_s, u"08-03-2026"_s),
        dueTask(u"D+2"_s, u"07-03-2026"_s), dueTask(u"D+1"_s, u"06-03-2026"_s)};

    const QStringList titles = titlesDue(tasks, QDateTime(QDate(2026, 3, 5), QTime(14, 30)));

    QCOMPARE(titles, QStringList({u"D+2"_s, u"D+1"_s}));
}

void RemindersTest::skipsDatesThatDoNotParse_data()
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

void RemindersTest::skipsDatesThatDoNotParse()
{
    QFETCH(QJsonValue, dateLimit);
    QJsonObject task = dueTask(u"Pagar"_s, QString());
    task.insert(u"dateLimit"_s, dateLimit);

    // At the epoch as well: an invalid date must not pass for one close to it.
    QCOMPARE(titlesDue({task}, QDateTime(QDate(2026, 3, 5), QTime(9, 0))), QStringList());
    QCOMPARE(titlesDue({task}, QDateTime::fromSecsSinceEpoch(0)), QStringList());
}

void RemindersTest::countsFromTheFirstMomentWhereMidnightDoesNotExist_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QDate>("day");
    QTest::newRow("Santiago") << QByteArray("America/Santiago") << QDate(2026, 9, 6);
    QTest::newRow("Cairo") << QByteArray("Africa/Cairo") << QDate(2026, 4, 24);
}

void RemindersTest::countsFromTheFirstMomentWhereMidnightDoesNotExist()
{
    QFETCH(QByteArray, zone);
    QFETCH(QDate, day);
    const TimeZone elsewhere(zone);
    QCOMPARE(day.startOfDay().time(), QTime(1, 0)); // else this system's zone data lacks the jump
    const QJsonArray tasks = {dueTask(u"Pagar"_s, day.toString(u"dd-MM-yyyy"))};

    QCOMPARE(titlesDue(tasks, QDateTime(day.addDays(-1), QTime(14, 30))), QStringList(u"Pagar"_s));
    QCOMPARE(titlesDue(tasks, QDateTime(day.addDays(-3), QTime(23, 59))), QStringList());
    QCOMPARE(titlesDue(tasks, QDateTime(day.addDays(-2), QTime(1, 0))), QStringList(u"Pagar"_s));
    QCOMPARE(titlesDue(tasks, QDateTime(day, QTime(1, 0))), QStringList(u"Pagar"_s));
    QCOMPARE(titlesDue(tasks, QDateTime(day, QTime(1, 1))), QStringList());
}

void RemindersTest::keepsFileOrderAndEmptyTitles()
{
    const QJsonArray tasks = {dueTask(u"Zeta"_s, u"06-03-2026"_s), dueTask(QString(), u"06-03-2026"_s),
        QJsonObject{{u"dateLimit"_s, u"07-03-2026"_s}}, dueTask(u"Alfa"_s, u"06-03-2026"_s), u"texto"_s};

    const QStringList titles = titlesDue(tasks, QDateTime(QDate(2026, 3, 5), QTime(9, 0)));

    QCOMPARE(titles, QStringList({u"Zeta"_s, QString(), QString(), u"Alfa"_s}));
}

void RemindersTest::findsTheDueAmongTenThousand()
{
    QJsonArray tasks;
    for (int i = 0; i < 10'000; ++i) {
        tasks.append(dueTask(QString::number(i), QDate(2000, 1, 1).addDays(i).toString(u"dd-MM-yyyy")));
    }
    const int march6 = static_cast<int>(QDate(2000, 1, 1).daysTo(QDate(2026, 3, 6)));

    const QStringList titles = titlesDue(tasks, QDateTime(QDate(2026, 3, 5), QTime(14, 30)));

    QCOMPARE(titles, QStringList({QString::number(march6), QString::number(march6 + 1)}));
}

void RemindersTest::announcesCountAndTitlesInOneMessage()
{
    home::writeTasks({dueTask(u"A"_s, dayFromToday(2)), dueTask(u"Lejana"_s, dayFromToday(9)),
        dueTask(u"B"_s, dayFromToday(2))});
    MainWindow window;
    widget<QCheckBox>(window, "AdvancedNotify")->setChecked(true);

    callSlot(window, "checkTaskReminders");

    const TrayMessage expected{u"Tareas por vencer"_s, u"Hay 2 tarea(s) por vencer dentro de 2 días:\nA, B"_s,
        QSystemTrayIcon::Information, 10000, true};
    QCOMPARE(traymessages::all(), QList<TrayMessage>({expected}));
}

void RemindersTest::announcesEmptyTitlesAsWell()
{
    home::writeTasks({dueTask(u"A"_s, dayFromToday(2)), dueTask(QString(), dayFromToday(2))});
    MainWindow window;
    widget<QCheckBox>(window, "AdvancedNotify")->setChecked(true);

    callSlot(window, "checkTaskReminders");

    QCOMPARE(traymessages::all().constFirst().text, u"Hay 2 tarea(s) por vencer dentro de 2 días:\nA, "_s);
}

void RemindersTest::announcesAgainEachTime()
{
    home::writeTasks({dueTask(u"A %1 %2"_s, dayFromToday(2))});
    MainWindow window;
    widget<QCheckBox>(window, "SimpleNotify")->setChecked(false);
    widget<QCheckBox>(window, "AdvancedNotify")->setChecked(true);

    callSlot(window, "checkTaskReminders");
    callSlot(window, "checkTaskReminders");

    QCOMPARE(traymessages::all().size(), 2);
    QCOMPARE(traymessages::all().at(1).text, u"Hay 1 tarea(s) por vencer dentro de 2 días:\nA %1 %2"_s);
}

void RemindersTest::readsNothingWhenTheBoxIsUnchecked()
{
    home::writeTasks({dueTask(u"A"_s, dayFromToday(2))});
    MainWindow window;
    resetTaskFileOpens();

    callSlot(window, "checkTaskReminders");

    QCOMPARE(taskFileOpens(), 0);
    QCOMPARE(traymessages::all(), QList<TrayMessage>());
}

void RemindersTest::asksTheBoxAndNotTheStoredPreference()
{
    home::writeTasks({dueTask(u"A"_s, dayFromToday(2))});
    MainWindow window;
    home::setPreference(u"advancedNotify"_s, true);

    callSlot(window, "checkTaskReminders");

    QCOMPARE(traymessages::all(), QList<TrayMessage>());
}

void RemindersTest::saysNothingForAnEmptyList_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("empty array") << QByteArray("[]");
    QTest::newRow("no JSON") << QByteArray("06-03-2026");
    QTest::newRow("an overdue task") << QByteArray(
        R"([{"id": "{a}", "title": "A", "dateLimit": "01-01-2020"}])");
}

void RemindersTest::saysNothingForAnEmptyList()
{
    QFETCH(QByteArray, content);
    home::writeBytes(content);
    MainWindow window;
    widget<QCheckBox>(window, "AdvancedNotify")->setChecked(true);

    callSlot(window, "checkTaskReminders");

    QCOMPARE(traymessages::all(), QList<TrayMessage>());
}

void RemindersTest::onlyLogsAnUnreadableFile()
{
    home::writeTasks({dueTask(u"A"_s, dayFromToday(2))});
    MainWindow window;
    widget<QCheckBox>(window, "AdvancedNotify")->setChecked(true);
    const FailingOpen failing(O_RDONLY);
    expectFileError("Failed to open file for reading:", FailingOpen::errorString());

    callSlot(window, "checkTaskReminders");

    QCOMPARE(traymessages::all(), QList<TrayMessage>());
}

NUBARIA_TEST_MAIN(RemindersTest)
#include "reminderstest.moc"
