#include "support/failingopen.h"
#include "support/home.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

void writeThreeTasks()
{
    home::writeTasks({home::record(u"{b}"_s, u"beta"_s), home::record(u"{z}"_s, u"Zeta"_s),
        home::record(u"{a}"_s, u"alfa"_s)});
}

} // namespace

/// What is told once, to the right one, where no other test tells it.
class MainWindowWiringTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void storesAPreferenceWhenItsBoxIsClicked_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("key");
        QTest::newRow("general notices") << u"SimpleNotify"_s << u"simpleNotify"_s;
        QTest::newRow("reminders") << u"AdvancedNotify"_s << u"advancedNotify"_s;
        QTest::newRow("closing") << u"changeClose"_s << u"changeClose"_s;
    }

    void storesAPreferenceWhenItsBoxIsClicked()
    {
        QFETCH(QString, box);
        QFETCH(QString, key);
        const MainWindow window;
        auto *checkBox = widget<QCheckBox>(window, qPrintable(box));
        const bool before = checkBox->isChecked();

        checkBox->click();
        QCOMPARE(home::preference(key).toString(), QVariant(!before).toString());

        checkBox->click();
        QCOMPARE(home::preference(key).toString(), QVariant(before).toString());
    }

    void ordersTheListOnceForEachChosenOrder()
    {
        writeThreeTasks();
        const MainWindow window;
        resetTaskFileOpens();

        widget<QComboBox>(window, "OrderNotesBy")->setCurrentIndex(1);

        QCOMPARE(shownTitles(window), QStringList({u"Zeta"_s, u"alfa"_s, u"beta"_s}));
        QCOMPARE(taskFileOpens(), 1);
    }

    void searchesTheListOnceForEachTypedLetter()
    {
        writeThreeTasks();
        const MainWindow window;
        resetTaskFileOpens();

        QTest::keyClicks(widget(window, "SearchTask"), u"ta"_s);

        QCOMPARE(shownTitles(window), QStringList({u"beta"_s, u"Zeta"_s}));
        QCOMPARE(taskFileOpens(), 2);
    }

    void showsTheTaskThatBecomesCurrent()
    {
        writeThreeTasks();
        const MainWindow window;
        selectRow(window, 0);
        resetTaskFileOpens();

        selectRow(window, 2);

        QCOMPARE(widget<QLineEdit>(window, "TaskTitleView")->text(), u"alfa"_s);
        QCOMPARE(taskFileOpens(), 1);
    }

    void showsADoubleClickedTaskThatIsCurrentAlready()
    {
        writeThreeTasks();
        MainWindow window;
        window.show();
        selectRow(window, 1);
        click(window, "CloseDetailTaskBtn");
        widget<QLineEdit>(window, "TaskTitleView")->clear();
        QListView *list = taskList(window);
        const QPoint row = list->visualRect(list->currentIndex()).center();

        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row);
        QCOMPARE(widget<QLineEdit>(window, "TaskTitleView")->text(), QString());
        resetTaskFileOpens();
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, row);

        QCOMPARE(taskFileOpens(), 1);
        QCOMPARE(widget<QLineEdit>(window, "TaskTitleView")->text(), u"Zeta"_s);
        QTRY_COMPARE(widget(window, "TaskDetail")->x(), 0);
    }

    void remindsWheneverItsTimerRunsOut()
    {
        writeTaskDueInTwoDays();
        home::setPreference(u"advancedNotify"_s, true);
        const MainWindow window;
        QCoreApplication::processEvents();
        QVERIFY(traymessages::titled(u"Tareas por vencer"_s).isEmpty());

        window.findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly)->setInterval(1);

        QTRY_VERIFY(traymessages::titled(u"Tareas por vencer"_s).size() >= 2);
    }

private:
    static void writeTaskDueInTwoDays()
    {
        QJsonObject task = home::record(u"{a}"_s, u"Pagar la renta"_s);
        task["dateLimit"_L1] = QDate::currentDate().addDays(2).toString(u"dd-MM-yyyy");
        home::writeTasks({task});
    }
};

NUBARIA_TEST_MAIN(MainWindowWiringTest)
#include "mainwindowwiringtest.moc"
