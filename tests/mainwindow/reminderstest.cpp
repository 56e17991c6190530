#include "core/reminders.h"

#include "support/failingopen.h"
#include "support/home.h"
#include "support/loglines.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QCheckBox>

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

} // namespace

class RemindersTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void announcesCountAndTitlesInOneMessage()
    {
        home::writeTasks({dueTask(u"A"_s, dayFromToday(2)), dueTask(u"Lejana"_s, dayFromToday(9)),
            dueTask(u"B"_s, dayFromToday(2))});
        MainWindow window;
        widget<QCheckBox>(window, "AdvancedNotify")->setChecked(true);

        callSlot(window, "checkTaskReminders");

        const TrayMessage expected{u"Tareas por vencer"_s,
            u"Hay 2 tarea(s) por vencer dentro de 2 días:\nA, B"_s, QSystemTrayIcon::Information, 10000,
            true};
        QCOMPARE(traymessages::all(), QList<TrayMessage>({expected}));
    }

    void announcesEmptyTitlesAsWell()
    {
        home::writeTasks({dueTask(u"A"_s, dayFromToday(2)), dueTask(QString(), dayFromToday(2))});
        MainWindow window;
        widget<QCheckBox>(window, "AdvancedNotify")->setChecked(true);

        callSlot(window, "checkTaskReminders");

        QCOMPARE(
            traymessages::all().constFirst().text, u"Hay 2 tarea(s) por vencer dentro de 2 días:\nA, "_s);
    }

    void announcesAgainEachTime()
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

    void readsNothingWhenTheBoxIsUnchecked()
    {
        home::writeTasks({dueTask(u"A"_s, dayFromToday(2))});
        MainWindow window;
        resetTaskFileOpens();

        callSlot(window, "checkTaskReminders");

        QCOMPARE(taskFileOpens(), 0);
        QCOMPARE(traymessages::all(), QList<TrayMessage>());
    }

    void asksTheBoxAndNotTheStoredPreference()
    {
        home::writeTasks({dueTask(u"A"_s, dayFromToday(2))});
        MainWindow window;
        home::setPreference(u"advancedNotify"_s, true);

        callSlot(window, "checkTaskReminders");

        QCOMPARE(traymessages::all(), QList<TrayMessage>());
    }

    void saysNothingForAnEmptyList_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty file") << QByteArray();
        QTest::newRow("empty array") << QByteArray("[]");
        QTest::newRow("no JSON") << QByteArray("06-03-2026");
        QTest::newRow("an overdue task")
            << QByteArray(R"([{"id": "{a}", "title": "A", "dateLimit": "01-01-2020"}])");
    }

    void saysNothingForAnEmptyList()
    {
        QFETCH(QByteArray, content);
        home::writeBytes(content);
        MainWindow window;
        widget<QCheckBox>(window, "AdvancedNotify")->setChecked(true);

        callSlot(window, "checkTaskReminders");

        QCOMPARE(traymessages::all(), QList<TrayMessage>());
    }

    void onlyLogsAnUnreadableFile()
    {
        home::writeTasks({dueTask(u"A"_s, dayFromToday(2))});
        MainWindow window;
        widget<QCheckBox>(window, "AdvancedNotify")->setChecked(true);
        const FailingOpen failing(O_RDONLY);
        expectFileError("Failed to open file for reading:", FailingOpen::errorString());

        callSlot(window, "checkTaskReminders");

        QCOMPARE(traymessages::all(), QList<TrayMessage>());
    }
};

NUBARIA_TEST_MAIN(RemindersTest)
#include "reminderstest.moc"
