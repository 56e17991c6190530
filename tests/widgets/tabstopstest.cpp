#include "support/home.h"
#include "support/keyboard.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QDateEdit>
#include <QTextEdit>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Where Tab, or Shift+Tab, leads until it comes back to where the first one led; every place once.
QStringList round(const MainWindow &window, bool forwards = true)
{
    QStringList places;
    const auto step = [&window, forwards] {
        forwards ? press(window, Qt::Key_Tab) : press(window, Qt::Key_Backtab, Qt::ShiftModifier);
        return focused(window);
    };
    constexpr int enough = 40;
    QString place = step();
    for (int steps = 0; steps < enough && (places.isEmpty() || place != places.constFirst()); ++steps) {
        if (places.isEmpty() || place != places.constLast()) { // a date has three parts
            places.append(place);
        }
        place = step();
    }
    return places;
}

// A test builds its tables once, at its start.
// clazy:excludeall=non-pod-global-static
const QStringList stopsOfThePanel = {u"TaskTitleView"_s, u"TaskDescriptionView"_s, u"CategoryTaskBoxView"_s,
    u"DateLimitTaskView"_s, u"UrgencyTaskBoxView"_s, u"DeleteTaskBtn"_s, u"FinishTaskBtn"_s,
    u"UpdateTaskBtn"_s, u"CloseDetailTaskBtn"_s};

} // namespace

class TabStopsTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        WindowTest::init();
        home::writeTasks({home::record(u"{a}"_s, u"Uno"_s)});
    }

    void goesThroughWhatAPageShows_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::addColumn<QStringList>("stops");
        QTest::newRow("tasks") << QByteArray("TaskViewButton")
                               << QStringList{u"OrderNotesBy"_s, u"SearchTask"_s};
        QTest::newRow("new task") << QByteArray("NewTaskViewButton")
                                  << QStringList{u"TaskDescription"_s, u"CategoryTaskBox"_s,
                                         u"DateLimitTask"_s, u"UrgencyTaskBox"_s, u"CleanTaskButton"_s,
                                         u"CancelTaskButton"_s, u"SaveTaskButton"_s, u"TaskTitle"_s};
        QTest::newRow("profile") << QByteArray("ProfileViewButton")
                                 << QStringList{u"SetProfile"_s, u"SetProfileInfo"_s};
        QTest::newRow("settings") << QByteArray("SettingsViewButton")
                                  << QStringList{u"SimpleNotify"_s, u"AdvancedNotify"_s, u"changeClose"_s,
                                         u"DisplayMessage"_s, u"ChangeTextTheme"_s, u"ChangeColorTheme"_s};
    }

    void goesThroughWhatAPageShows()
    {
        QFETCH(QByteArray, page);
        QFETCH(QStringList, stops);
        MainWindow window;
        QVERIFY(showActive(window));
        click(window, "PatchNoticesViewButton");
        click(window, page.constData());

        QCOMPARE(round(window), stops);

        // It stands on the first one, and goes on from there the other way.
        std::reverse(stops.begin(), stops.end());
        QCOMPARE(round(window, false), stops);
    }

    void findsNothingToStopAtInTheNotes()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        click(window, "PatchNoticesViewButton");

        QCOMPARE(round(window), QStringList{u"PatchPage"_s});
    }

    void includesTheFieldsOfAProfileThatIsBeingEdited()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        click(window, "ProfileViewButton");
        press(window, Qt::Key_Tab);
        press(window, Qt::Key_Tab);
        press(window, Qt::Key_Space);

        QCOMPARE(focused(window), u"UserName"_s);
        QCOMPARE(round(window),
            QStringList({u"UserMail"_s, u"SetProfile"_s, u"SaveProfileInfo"_s, u"UserName"_s}));

        press(window, Qt::Key_Tab);
        press(window, Qt::Key_Tab);
        press(window, Qt::Key_Space);
        QCOMPARE(focused(window), u"SetProfileInfo"_s);
    }

    void staysInThePanelWhileThatIsOpen()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        selectRow(window, 0);

        QCOMPARE(round(window), stopsOfThePanel);

        QStringList backwards = stopsOfThePanel;
        std::reverse(backwards.begin(), backwards.end());
        QCOMPARE(round(window, false), backwards);
        press(window, Qt::Key_Escape);
        QCOMPARE(round(window), QStringList({u"OrderNotesBy"_s, u"SearchTask"_s}));
    }

    void goesBackFromThePanelItselfToTheArrow()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        selectRow(window, 0);

        press(window, Qt::Key_Backtab, Qt::ShiftModifier);

        QCOMPARE(focused(window), u"CloseDetailTaskBtn"_s);
    }

    void includesTheBannerThatHasSlidIn()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        callSlot(window, "showUpdateMessage");
        QTRY_COMPARE(widget(window, "FrameUpdater")->x(), 10);

        QCOMPARE(round(window),
            QStringList({u"OrderNotesBy"_s, u"CancelUpdate"_s, u"StartUpdate"_s, u"SearchTask"_s}));

        press(window, Qt::Key_Tab);
        press(window, Qt::Key_Space);
        QTRY_COMPARE(widget(window, "FrameUpdater")->x(), -230);
        press(window, Qt::Key_Tab);
        QCOMPARE(focused(window), u"SearchTask"_s);
    }

    void writesNoTabulator_data()
    {
        QTest::addColumn<QByteArray>("description");
        QTest::newRow("new task") << QByteArray("TaskDescription");
        QTest::newRow("details") << QByteArray("TaskDescriptionView");
    }

    void writesNoTabulator()
    {
        QFETCH(QByteArray, description);
        MainWindow window;
        QVERIFY(showActive(window));
        if (description.endsWith("View")) {
            selectRow(window, 0);
        } else {
            click(window, "NewTaskViewButton");
        }
        auto *edit = widget<QTextEdit>(window, description.constData());
        edit->setPlainText(u"uno"_s);
        edit->setFocus();
        QVERIFY(edit->tabChangesFocus());

        press(window, Qt::Key_Tab);

        QCOMPARE(edit->toPlainText(), u"uno"_s);
        QVERIFY(!edit->hasFocus());
    }

    void stepsThroughThePartsOfADate()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        click(window, "NewTaskViewButton");
        const auto *date = widget<QDateEdit>(window, "DateLimitTask");
        widget(window, "CategoryTaskBox")->setFocus();
        QList<int> parts;
        for (int step = 0; step < 3; ++step) {
            press(window, Qt::Key_Tab);
            QVERIFY(date->hasFocus());
            parts.append(date->currentSectionIndex());
        }
        QCOMPARE(parts, QList<int>({0, 1, 2}));

        press(window, Qt::Key_Tab);
        QCOMPARE(focused(window), u"UrgencyTaskBox"_s);

        parts.clear();
        for (int step = 0; step < 3; ++step) {
            press(window, Qt::Key_Backtab, Qt::ShiftModifier);
            QVERIFY(date->hasFocus());
            parts.append(date->currentSectionIndex());
        }
        QCOMPARE(parts, QList<int>({2, 1, 0}));
        press(window, Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(focused(window), u"CategoryTaskBox"_s);
    }

    void leavesTheFocusPoliciesAsTheyAre()
    {
        MainWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        for (const char *page : {"NewTaskViewButton", "ProfileViewButton", "TaskViewButton"}) {
            click(window, page);
            QVERIFY(!round(window).isEmpty());
        }
        selectRow(window, 0);
        QVERIFY(!round(window).isEmpty());

        for (const char *name : {"TaskViewButton", "SaveTaskButton", "CleanTaskButton", "UpdateTaskBtn",
                 "CloseDetailTaskBtn", "SetProfile", "CancelUpdate", "TaskListView"}) {
            QCOMPARE(widget(window, name)->focusPolicy(), Qt::NoFocus);
        }
    }
};

NUBARIA_TEST_MAIN(TabStopsTest)
#include "tabstopstest.moc"
