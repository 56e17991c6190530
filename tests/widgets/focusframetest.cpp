#include "support/home.h"
#include "support/keyboard.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusFrame>

using namespace Qt::Literals::StringLiterals;

namespace {

const QColor darkLine(0x1c, 0x1c, 0x1c);

/// The sides of the widget, of four, along which a line can be seen that stands out from what is behind it.
int framedSides(MainWindow &window, const QWidget &widget)
{
    constexpr int outside = 4; // the outermost line of the frame
    const QRect frame = widget.rect().adjusted(-outside, -outside, outside, outside);
    const QImage picture = window.grab().toImage();
    int sides = 0;
    for (const QPoint place :
        {QPoint(frame.center().x(), frame.top()), QPoint(frame.center().x(), frame.bottom()),
            QPoint(frame.left(), frame.center().y()), QPoint(frame.right(), frame.center().y())}) {
        sides += picture.pixelColor(widget.mapTo(&window, place)) == darkLine ? 1 : 0;
    }
    return sides;
}

} // namespace

class FocusFrameTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void framesNothingAtTheStart()
    {
        MainWindow window;

        QVERIFY(showActive(window));

        QVERIFY(!window.findChild<QFocusFrame *>()->isVisible());
    }

    void framesWhatAKeyLeadsToInEveryPalette_data()
    {
        QTest::addColumn<int>("palette");
        const MainWindow window;
        const auto *palettes = widget<QComboBox>(window, "ChangeColorTheme");
        QCOMPARE(palettes->count(), 7);
        for (int palette = 0; palette < palettes->count(); ++palette) {
            QTest::newRow(qPrintable(palettes->itemText(palette))) << palette;
        }
    }

    void framesWhatAKeyLeadsToInEveryPalette()
    {
        QFETCH(int, palette);
        MainWindow window;
        widget<QComboBox>(window, "ChangeColorTheme")->setCurrentIndex(palette);
        QVERIFY(showActive(window));
        const QList<QPair<const char *, int>> pages = {{"TaskViewButton", 2}, {"NewTaskViewButton", 9},
            {"ProfileViewButton", 2}, {"SettingsViewButton", 6}};
        for (const auto &[page, stops] : pages) {
            click(window, page);
            for (int stop = 0; stop < stops; ++stop) {
                press(window, Qt::Key_Tab);
                QVERIFY2(framedSides(window, *window.focusWidget()) == 4,
                    qPrintable(window.focusWidget()->objectName()));
            }
        }
    }

    void staysWhileThePaletteChanges()
    {
        MainWindow window;
        click(window, "SettingsViewButton");
        showActive(window);
        for (int stop = 0; stop < 6; ++stop) {
            press(window, Qt::Key_Tab);
        }
        const auto *palettes = widget<QComboBox>(window, "ChangeColorTheme");
        for (int palette = 1; palette < palettes->count(); ++palette) {
            press(window, Qt::Key_Down);
            QCOMPARE(palettes->currentIndex(), palette);
            QCOMPARE(framedSides(window, *palettes), 4);
        }
    }

    void isNotHiddenByNeighbours()
    {
        MainWindow window;
        click(window, "ProfileViewButton");
        click(window, "SetProfileInfo");
        showActive(window);
        for (const char *edit : {"UserName", "UserMail"}) { // which overlap each other
            widget(window, edit)->setFocus();
            press(window, Qt::Key_Tab);
            press(window, Qt::Key_Backtab, Qt::ShiftModifier);
            QVERIFY(widget(window, edit)->hasFocus());
            QCOMPARE(framedSides(window, *widget(window, edit)), 4);
        }
    }

    void framesOneWidgetAtATime()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        press(window, Qt::Key_Tab);
        QCOMPARE(framedSides(window, *widget(window, "OrderNotesBy")), 4);

        press(window, Qt::Key_Tab);

        QCOMPARE(framedSides(window, *widget(window, "OrderNotesBy")), 0);
        QCOMPARE(framedSides(window, *widget(window, "SearchTask")), 4);
    }

    void isNotThereForTheMouse()
    {
        MainWindow window;
        click(window, "NewTaskViewButton");
        QVERIFY(showActive(window));
        const QWidget *title = widget(window, "TaskTitle");
        QCOMPARE(framedSides(window, *title), 0);
        press(window, Qt::Key_Tab);
        press(window, Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(framedSides(window, *title), 4);

        QTest::mouseClick(
            window.windowHandle(), Qt::LeftButton, {}, title->mapTo(&window, title->rect().center()));
        QCOMPARE(framedSides(window, *title), 0);

        press(window, Qt::Key_A); // typing where one has clicked needs no frame
        QCOMPARE(framedSides(window, *title), 0);
    }

    void comesWithTheFirstKeyOnWhatKeysOperate()
    {
        MainWindow window;
        click(window, "SettingsViewButton");
        QVERIFY(showActive(window));
        auto *check = widget<QCheckBox>(window, "changeClose");
        QTest::mouseClick(
            window.windowHandle(), Qt::LeftButton, {}, check->mapTo(&window, check->rect().center()));
        QVERIFY(check->hasFocus());
        QCOMPARE(framedSides(window, *check), 0);
        press(window, Qt::Key_Shift);
        QCOMPARE(framedSides(window, *check), 0);

        press(window, Qt::Key_Space);

        QCOMPARE(framedSides(window, *check), 4);
    }

    void leavesTheWidgetItselfAsItIs()
    {
        MainWindow window;
        click(window, "SettingsViewButton");
        QVERIFY(showActive(window));
        auto *check = widget<QCheckBox>(window, "AdvancedNotify");
        const QImage before = check->grab().toImage();

        press(window, Qt::Key_Tab);
        press(window, Qt::Key_Tab);

        QVERIFY(check->hasFocus());
        QCOMPARE(check->grab().toImage(), before);
    }

    void movesAlongWithThePanel()
    {
        home::writeTasks({home::record(u"{a}"_s, u"Uno"_s)});
        MainWindow window;
        QVERIFY(showActive(window));
        press(window, Qt::Key_Down);
        press(window, Qt::Key_Tab);

        QTRY_COMPARE(panelPlace(window), openPanel);

        QCOMPARE(framedSides(window, *widget(window, "TaskTitleView")), 4);
        press(window, Qt::Key_Escape);
        QTRY_COMPARE(panelPlace(window), closedPanel);
        QCOMPARE(framedSides(window, *widget(window, "SearchTask")), 4);
    }

    void isNoPartOfWhatAssistiveTechnologyIsTold()
    {
        MainWindow window;
        QVERIFY(showActive(window));
        QAccessibleInterface *page = QAccessible::queryAccessibleInterface(widget(window, "TasksPage"));
        const int children = page->childCount();

        press(window, Qt::Key_Tab);

        QVERIFY(widget(window, "TasksPage")->findChild<QFocusFrame *>());
        QCOMPARE(page->childCount(), children);
    }
};

NUBARIA_TEST_MAIN(FocusFrameTest)
#include "focusframetest.moc"
