#include "support/home.h"
#include "support/keyboard.h"
#include "support/listedtasks.h"
#include "support/messageboxes.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QComboBox>
#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

class KeyboardFocusTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        WindowTest::init();
        home::writeTasks(manyTasks());
    }

    void startsInTheSearchField()
    {
        MainWindow window;
        QVERIFY(showActive(window));

        press(window, Qt::Key_P);

        QCOMPARE(textOf(window, "SearchTask"), u"p"_s);
        QCOMPARE(widget<QComboBox>(window, "OrderNotesBy")->currentIndex(), -1);
    }

    void movesIntoThePanelOfATask()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        press(window, Qt::Key_T);
        const QStringList listed = shownTitles(window);

        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
            taskList(window)->viewport()->mapTo(
                &window, taskList(window)->visualRect(taskList(window)->model()->index(2, 0)).center()));
        QCOMPARE(textOf(window, "TaskTitleView"), u"Tarea 2"_s);
        for (const Qt::Key key :
            {Qt::Key_X, Qt::Key_Space, Qt::Key_Return, Qt::Key_Delete, Qt::Key_Backspace}) {
            press(window, key);
        }

        QCOMPARE(focused(window), u"TaskDetail"_s);
        QCOMPARE(textOf(window, "SearchTask"), u"t"_s);
        QCOMPARE(shownTitles(window), listed);
        QCOMPARE(textOf(window, "TaskTitleView"), u"Tarea 2"_s);
        press(window, Qt::Key_Tab);
        QCOMPARE(focused(window), u"TaskTitleView"_s);
        press(window, Qt::Key_Y);
        press(window, Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(home::tasks().at(2)["title"_L1].toString(), u"y"_s);
    }

    void movesBackToTheSearchField_data()
    {
        QTest::addColumn<QByteArray>("way");
        for (const char *way : {"CloseDetailTaskBtn", "UpdateTaskBtn", "FinishTaskBtn", "Escape"}) {
            QTest::newRow(way) << QByteArray(way);
        }
    }

    void movesBackToTheSearchField()
    {
        QFETCH(QByteArray, way);
        MainWindow window;
        QVERIFY(showActive(window));
        for (const char *from : {"TaskDetail", "TaskDescriptionView", "UpdateTaskBtn"}) {
            selectRow(window, from[0] == 'U' ? 1 : 0);
            press(window, Qt::Key_Down);
            widget(window, from)->setFocus();
            const MessageBoxes boxes(QMessageBox::Yes);

            way == "Escape" ? press(window, Qt::Key_Escape) : click(window, way.constData());

            QCOMPARE(focused(window), u"SearchTask"_s);
            QTRY_COMPARE(panelPlace(window), closedPanel);
        }
    }

    void showsTheBeginningOfATitle()
    {
        home::writeTasks({home::record(u"{a}"_s, u"Uno "_s.repeated(200))});
        MainWindow window;
        const auto *title = widget<QLineEdit>(window, "TaskTitleView");

        selectRow(window, 0);
        QCOMPARE(title->cursorPosition(), 0);

        click(window, "CloseDetailTaskBtn");
        Q_EMIT taskList(window)->doubleClicked(taskList(window)->model()->index(0, 0));
        QCOMPARE(title->cursorPosition(), 0);
    }

    void keepsTheFocusOutOfSightNowhere()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        const QList<QPair<const char *, QString>> pages = {{"NewTaskViewButton", u"TaskTitle"_s},
            {"TaskViewButton", u"SearchTask"_s}, {"SettingsViewButton", u"SettingsPage"_s},
            {"ProfileViewButton", u"ProfilePage"_s}, {"PatchNoticesViewButton", u"PatchPage"_s}};
        for (const auto &[button, place] : pages) {
            click(window, button);
            QCOMPARE(focused(window), place);
        }
        // From the tray, and after the window was hidden with a field in use.
        callSlot(window, "trayIconActivated", QSystemTrayIcon::DoubleClick);
        QCOMPARE(focused(window), u"SearchTask"_s);
        selectRow(window, 0);
        press(window, Qt::Key_Tab);
        QCOMPARE(focused(window), u"TaskTitleView"_s);
        window.hide();
        QVERIFY(showActive(window));
        QCOMPARE(focused(window), u"TaskTitleView"_s);
        window.hide();
        callSlot(window, "onSettingsViewButtonClicked");
        QVERIFY(showActive(window));
        QCOMPARE(focused(window), u"SettingsPage"_s);
    }
};

NUBARIA_TEST_MAIN(KeyboardFocusTest)
#include "keyboardfocustest.moc"
