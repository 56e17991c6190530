#include "widgets/wholeswitch.h"

#include "support/window.h"
#include "support/windowtest.h"

#include <QCheckBox>
#include <QLabel>

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Switch
{
    const char *box;
    const char *name;
    const char *explanation;
};

constexpr std::array switches = {
    Switch{"SimpleNotify", "SubTitleDtLabelTxt_8", "ChangeColorThemeText_2"},
    Switch{"AdvancedNotify", "SubTitleDtLabelTxt_9", "ChangeColorThemeText_3"},
    Switch{"changeClose", "SubTitleDtLabelTxt_11", "ChangeColorThemeText_5"},
};

/// Counts the mouse events that a widget gets.
class MouseCounter final : public QObject
{
    Q_DISABLE_COPY_MOVE(MouseCounter)
public:
    explicit MouseCounter(QWidget *widget) { widget->installEventFilter(this); }
    ~MouseCounter() override = default;

    int count() const { return m_count; }

private:
    bool eventFilter(QObject *, QEvent *event) override
    {
        m_count += event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease;
        return false;
    }

    int m_count = 0;
};

/// A press and a release through the window, as of a real mouse.
void press(
    const MainWindow &window, const QWidget &widget, QPoint place, Qt::MouseButton button = Qt::LeftButton)
{
    QTest::mousePress(window.windowHandle(), button, {}, widget.mapTo(&window, place));
}

void release(
    const MainWindow &window, const QWidget &widget, QPoint place, Qt::MouseButton button = Qt::LeftButton)
{
    QTest::mouseRelease(window.windowHandle(), button, {}, widget.mapTo(&window, place));
}

} // namespace

class WholeSwitchTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void answersToAClickAnywhereOnIt_data()
    {
        QTest::addColumn<QByteArray>("box");
        QTest::addColumn<QByteArray>("clicked");
        QTest::addColumn<QPoint>("place");
        for (const auto &[box, name, explanation] : switches) {
            QTest::addRow("%s, left end", box) << QByteArray(box) << QByteArray(box) << QPoint(1, 10);
            QTest::addRow("%s, middle", box) << QByteArray(box) << QByteArray(box) << QPoint(20, 10);
            QTest::addRow("%s, right end", box) << QByteArray(box) << QByteArray(box) << QPoint(38, 10);
            QTest::addRow("%s, name", box) << QByteArray(box) << QByteArray(name) << QPoint(100, 7);
            QTest::addRow("%s, explanation", box)
                << QByteArray(box) << QByteArray(explanation) << QPoint(300, 12);
        }
    }

    void answersToAClickAnywhereOnIt()
    {
        QFETCH(QByteArray, box);
        QFETCH(QByteArray, clicked);
        QFETCH(QPoint, place);
        MainWindow window;
        click(window, "SettingsViewButton");
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto *check = widget<QCheckBox>(window, box.constData());
        const QWidget *target = widget(window, clicked.constData());
        const MouseCounter behind(target->parentWidget());
        const bool before = check->isChecked();

        press(window, *target, place);
        QVERIFY(check->isDown());
        release(window, *target, place);
        QCOMPARE(check->isChecked(), !before);
        QVERIFY(!check->isDown());
        QCOMPARE(behind.count(), 0);

        press(window, *target, place);
        release(window, *target, place);
        QCOMPARE(check->isChecked(), before);
    }

    void answersToNothingElse()
    {
        MainWindow window;
        click(window, "SettingsViewButton");
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto *check = widget<QCheckBox>(window, "changeClose");
        const QWidget *label = widget(window, "SubTitleDtLabelTxt_11");

        // Another button, a release beside where the press was, and a release without a press.
        press(window, *label, {10, 5}, Qt::RightButton);
        release(window, *label, {10, 5}, Qt::RightButton);
        QVERIFY(!check->isChecked());
        press(window, *label, {10, 5});
        release(window, *label, {10, -60});
        QVERIFY(!check->isChecked());
        QVERIFY(!check->isDown());
        press(window, *widget(window, "SettingsSubTitle"), {10, 5});
        release(window, *label, {10, 5});
        QVERIFY(!check->isChecked());
        // As after a press that has closed a menu above the label.
        QTest::mouseRelease(widget(window, "SubTitleDtLabelTxt_11"), Qt::LeftButton, {}, {10, 5});
        QVERIFY(!check->isChecked());
    }

    void leavesADisabledSwitchAlone()
    {
        MainWindow window;
        click(window, "SettingsViewButton");
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto *check = widget<QCheckBox>(window, "NotifyUpdate");
        for (const char *name : {"NotifyUpdate", "SubTitleDtLabelTxt_10", "ChangeColorThemeText_4"}) {
            press(window, *widget(window, name), {20, 10});
            QVERIFY(!check->isDown());
            release(window, *widget(window, name), {20, 10});
            QVERIFY(check->isChecked());
        }
    }
};

NUBARIA_TEST_MAIN(WholeSwitchTest)
#include "wholeswitchtest.moc"
