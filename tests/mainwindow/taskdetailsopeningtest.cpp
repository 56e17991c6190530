#include "support/failingopen.h"
#include "support/home.h"
#include "support/messageboxes.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QLabel>
#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

QModelIndex row(const MainWindow &window, int number)
{
    return taskList(window)->model()->index(number, 0);
}

QString shownTitle(const MainWindow &window)
{
    return widget<QLineEdit>(window, "TaskTitleView")->text();
}

} // namespace

/// The ways to a task's details, and what bars them.
class TaskDetailsOpeningTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void slidesThePanelIn()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        QCOMPARE(panelPlace(window), closedPanel);

        selectRow(window, 0);

        QTRY_COMPARE(panelPlace(window), openPanel);
    }

    void aChangeOfTheCurrentRowRefillsThePanel()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s)});
        const MainWindow window;
        selectRow(window, 0);
        QCOMPARE(shownTitle(window), u"uno"_s);

        selectRow(window, 1);

        QCOMPARE(shownTitle(window), u"dos"_s);
    }

    void aClickOnAnotherRowOpensItsTask()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s)});
        MainWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));

        QTest::mouseClick(taskList(window)->viewport(), Qt::LeftButton, Qt::NoModifier,
            taskList(window)->visualRect(row(window, 1)).center());

        QCOMPARE(shownTitle(window), u"dos"_s);
        QTRY_COMPARE(panelPlace(window), openPanel);
    }

    void aKeyOpensTheTaskOfTheRowItMovesTo()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s),
            home::record(u"{c}"_s, u"tres"_s)});
        const MainWindow window;
        const std::initializer_list<std::pair<Qt::Key, QString>> moves
            = {{Qt::Key_Down, u"uno"_s}, {Qt::Key_Down, u"dos"_s}, {Qt::Key_Up, u"uno"_s},
                {Qt::Key_End, u"tres"_s}, {Qt::Key_Home, u"uno"_s}};

        for (const auto &[key, title] : moves) {
            QTest::keyClick(taskList(window), key);
            QCOMPARE(shownTitle(window), title);
        }

        QTRY_COMPARE(panelPlace(window), openPanel);
    }

    void aDoubleClickOpensTheTaskAgain()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        MainWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const QPoint place = taskList(window)->visualRect(row(window, 0)).center();
        QTest::mouseClick(taskList(window)->viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QTRY_COMPARE(panelPlace(window), openPanel);
        click(window, "CloseDetailTaskBtn");
        QTRY_COMPARE(panelPlace(window), closedPanel);

        // The row is still the current one, so that a click changes nothing.
        QTest::mouseClick(taskList(window)->viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QVERIFY(waitForSlides());
        QCOMPARE(panelPlace(window), closedPanel);

        QTest::mouseDClick(taskList(window)->viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QTRY_COMPARE(panelPlace(window), openPanel);
    }

    void aDoubleClickAloneOpensTheTask()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s), home::record(u"{b}"_s, u"dos"_s)});
        const MainWindow window;

        Q_EMIT taskList(window)->doubleClicked(row(window, 1));

        QVERIFY(!taskList(window)->currentIndex().isValid());
        QCOMPARE(shownTitle(window), u"dos"_s);
        QTRY_COMPARE(panelPlace(window), openPanel);
    }

    void anUnusableRowIsIgnored()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        MainWindow window;
        const MessageBoxes boxes;
        resetTaskFileOpens();

        callSlot(window, "showTaskDetails", QModelIndex());
        callSlot(window, "showTaskDetails", row(window, 1));

        QCOMPARE(taskFileOpens(), 0);
        QCOMPARE(boxes.shown().size(), 0);
        QCOMPARE(shownTitle(window), QString());
    }

    void aTaskThatHasGoneIsNotFound_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("removed elsewhere") << QByteArray(R"([{"id":"{b}","title":"uno"}])");
        QTest::newRow("id in other letter case") << QByteArray(R"([{"id":"{A}","title":"uno"}])");
        QTest::newRow("no JSON") << QByteArray(R"([{"id":"{a}","title":"uno"},)");
        QTest::newRow("nothing") << QByteArray();
    }

    void aTaskThatHasGoneIsNotFound()
    {
        QFETCH(QByteArray, bytes);
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        home::writeBytes(bytes);
        const MessageBoxes boxes;

        selectRow(window, 0);

        compareOnlyBox(boxes, QMessageBox::Warning, u"Error"_s, u"Task details not found."_s);
        QCOMPARE(shownTitle(window), QString());
        QVERIFY(widget<QLabel>(window, "TaskAdvise")->isHidden());
        QVERIFY(waitForSlides());
        QCOMPARE(panelPlace(window), closedPanel);
    }

    void anElementThatIsNoObjectHasNoDetails()
    {
        MainWindow window;
        home::writeBytes(R"(["uno"])");
        callSlot(window, "loadTasks");
        const MessageBoxes boxes;

        selectRow(window, 0);

        compareOnlyBox(boxes, QMessageBox::Warning, u"Error"_s, u"Task details not found."_s);
    }

    void aFileThatCannotBeReadIsReported()
    {
        home::writeTasks({home::record(u"{a}"_s, u"uno"_s)});
        const MainWindow window;
        QVERIFY(widget<QLabel>(window, "TaskAdvise")->isHidden());
        const MessageBoxes boxes;
        const FailingOpen failing(O_RDONLY);
        QTest::ignoreMessage(QtCriticalMsg, "Failed to open file for reading: \"Permission denied\"");

        selectRow(window, 0);

        compareOnlyBox(boxes, QMessageBox::Critical, u"Error"_s,
            u"Failed to open file for reading: Permission denied"_s);
        QVERIFY(!widget<QLabel>(window, "TaskAdvise")->isHidden());
        QCOMPARE(shownTitle(window), QString());
        QVERIFY(waitForSlides());
        QCOMPARE(panelPlace(window), closedPanel);
    }
};

NUBARIA_TEST_MAIN(TaskDetailsOpeningTest)
#include "taskdetailsopeningtest.moc"
