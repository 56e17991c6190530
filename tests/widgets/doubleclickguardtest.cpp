#include "widgets/doubleclickguard.h"

#include "support/windowtest.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QStyleHints>
#include <QWindow>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A window with two buttons and a field, and a curtain to be drawn before them.
struct Stage
{
    Stage()
    {
        window.resize(400, 300);
        button.setGeometry(20, 20, 100, 40);
        other.setGeometry(20, 80, 100, 40);
        field.setGeometry(20, 140, 200, 40);
        curtain.setGeometry(window.rect());
        curtain.hide();
        field.setContextMenuPolicy(Qt::NoContextMenu);
        window.show();
    }

    QPoint center(const QWidget &widget) const { return widget.mapTo(&window, widget.rect().center()); }

    /// Presses and releases, soon after what came before or long after it.
    void click(QPoint place, Qt::MouseButton which = Qt::LeftButton)
    {
        QTest::mousePress(window.windowHandle(), which, {}, place);
        QTest::mouseRelease(window.windowHandle(), which, {}, place);
    }
    void clickSoon(QPoint place, Qt::MouseButton which = Qt::LeftButton)
    {
        QTest::lastMouseTimestamp -= QTest::mouseDoubleClickInterval;
        click(place, which);
    }

    QWidget window;
    QPushButton button{&window};
    QPushButton other{&window};
    QLineEdit field{u"uno dos"_s, &window};
    QPushButton curtain{&window};
};

/// Counts what it is given.
class Surface final : public QWidget
{
public:
    using QWidget::QWidget;

    int presses = 0;
    int releases = 0;

protected:
    void mousePressEvent(QMouseEvent *) override { ++presses; }
    void mouseReleaseEvent(QMouseEvent *) override { ++releases; }
};

/// The same without a widget.
class BareWindow final : public QWindow
{
public:
    int presses = 0;

protected:
    void mousePressEvent(QMouseEvent *) override { ++presses; }
};

} // namespace

class DoubleClickGuardTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init() { m_stage = std::make_unique<Stage>(); }
    void cleanup() { m_stage.reset(); }

    void pressesAButtonOnce_data()
    {
        QTest::addColumn<int>("clicks");
        QTest::addColumn<QPoint>("drift");
        QTest::newRow("double click") << 2 << QPoint();
        QTest::newRow("triple click") << 3 << QPoint();
        QTest::newRow("four clicks") << 4 << QPoint();
        QTest::newRow("trembling hand")
            << 2 << QPoint(QGuiApplication::styleHints()->mouseDoubleClickDistance() + 1, 0);
    }

    void pressesAButtonOnce()
    {
        QFETCH(int, clicks);
        QFETCH(QPoint, drift);
        const DoubleClickGuard guard(nullptr);
        const QSignalSpy pressed(&m_stage->button, &QPushButton::pressed);
        const QSignalSpy clicked(&m_stage->button, &QPushButton::clicked);

        m_stage->click(m_stage->center(m_stage->button));
        for (int click = 1; click < clicks; ++click) {
            m_stage->clickSoon(m_stage->center(m_stage->button) + drift);
        }

        QCOMPARE(pressed.size(), 1);
        QCOMPARE(clicked.size(), 1);
    }

    void pressesAButtonAgainAfterAWhile()
    {
        const DoubleClickGuard guard(nullptr);
        const QSignalSpy clicked(&m_stage->button, &QPushButton::clicked);

        m_stage->click(m_stage->center(m_stage->button));
        m_stage->click(m_stage->center(m_stage->button));

        QCOMPARE(clicked.size(), 2);
    }

    void pressesAButtonAgainAfterAKey()
    {
        const DoubleClickGuard guard(nullptr);
        const QSignalSpy clicked(&m_stage->button, &QPushButton::clicked);

        m_stage->click(m_stage->center(m_stage->button));
        QTest::keyClick(m_stage->window.windowHandle(), Qt::Key_Escape);
        m_stage->clickSoon(m_stage->center(m_stage->button));

        QCOMPARE(clicked.size(), 2);
    }

    void letsAQuickClickElsewhereCount()
    {
        const DoubleClickGuard guard(nullptr);
        const QSignalSpy clicked(&m_stage->other, &QPushButton::clicked);

        m_stage->click(m_stage->center(m_stage->button));
        m_stage->clickSoon(m_stage->center(m_stage->other));

        QCOMPARE(clicked.size(), 1);
    }

    void letsAnotherMouseButtonCount()
    {
        const DoubleClickGuard guard(nullptr);
        const QSignalSpy clicked(&m_stage->button, &QPushButton::clicked);

        m_stage->click(m_stage->center(m_stage->button), Qt::RightButton);
        m_stage->clickSoon(m_stage->center(m_stage->button));

        QCOMPARE(clicked.size(), 1);
    }

    void keepsTheReleaseOfAKeptPressOnly()
    {
        DoubleClickGuard guard(nullptr);
        QWindow *window = m_stage->window.windowHandle();
        const QPoint place = m_stage->center(m_stage->button);
        m_stage->click(place);
        QTest::lastMouseTimestamp -= QTest::mouseDoubleClickInterval;
        QTest::mousePress(window, Qt::LeftButton, {}, place);
        const auto keepsReleaseOf = [&](Qt::MouseButton button) {
            QMouseEvent release(
                QEvent::MouseButtonRelease, place, window->mapToGlobal(place), button, {}, {});
            return guard.eventFilter(window, &release);
        };

        QVERIFY(!keepsReleaseOf(Qt::RightButton));
        QVERIFY(keepsReleaseOf(Qt::LeftButton));
        QVERIFY(!keepsReleaseOf(Qt::LeftButton));
    }

    void leavesAWindowWithoutWidgetsAlone()
    {
        const DoubleClickGuard guard(nullptr);
        BareWindow window;
        window.resize(100, 100);
        window.show();

        for (int click = 0; click < 2; ++click) {
            QTest::mousePress(&window, Qt::LeftButton, {}, QPoint(50, 50));
            QTest::mouseRelease(&window, Qt::LeftButton, {}, QPoint(50, 50));
            QTest::lastMouseTimestamp -= QTest::mouseDoubleClickInterval;
        }

        QCOMPARE(window.presses, 2);
    }

    void keepsTheSecondPressFromWhatHasComeInBetween_data()
    {
        QTest::addColumn<Qt::MouseButton>("which");
        QTest::newRow("left") << Qt::LeftButton;
        QTest::newRow("right") << Qt::RightButton;
    }

    void keepsTheSecondPressFromWhatHasComeInBetween()
    {
        QFETCH(Qt::MouseButton, which);
        const DoubleClickGuard guard(nullptr);
        QLineEdit rising(&m_stage->window);
        rising.setGeometry(m_stage->field.geometry());
        rising.setText(u"palabra"_s);
        rising.setContextMenuPolicy(Qt::CustomContextMenu);
        const QSignalSpy menus(&rising, &QWidget::customContextMenuRequested);

        m_stage->click(m_stage->center(m_stage->field), which);
        rising.show();
        m_stage->clickSoon(m_stage->center(rising), which);

        QVERIFY(!rising.hasFocus());
        QCOMPARE(rising.selectedText(), QString());
        QCOMPARE(menus.size(), 0);

        m_stage->click(m_stage->center(rising), which);
        QCOMPARE(menus.size(), which == Qt::RightButton ? 1 : 0);
    }

    void keepsTheFocusWhereTheFirstPressPutIt()
    {
        const DoubleClickGuard guard(nullptr);
        m_stage->window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&m_stage->window));

        m_stage->click(m_stage->center(m_stage->field));
        QVERIFY(m_stage->field.hasFocus());
        m_stage->curtain.setFocusPolicy(Qt::StrongFocus);
        m_stage->curtain.show();
        m_stage->clickSoon(m_stage->center(m_stage->field));

        QVERIFY(m_stage->field.hasFocus());
    }

    void keepsTheSecondPressFromAnotherWindow()
    {
        const DoubleClickGuard guard(nullptr);
        Stage box;
        const QSignalSpy clicked(&box.button, &QPushButton::clicked);
        box.window.move(m_stage->window.pos());

        m_stage->click(m_stage->center(m_stage->button));
        box.clickSoon(box.center(box.button));
        QCOMPARE(clicked.size(), 0);

        box.click(box.center(box.button));
        QCOMPARE(clicked.size(), 1);
    }

    void selectsAWordAndTheLine()
    {
        const DoubleClickGuard guard(nullptr);
        const QPoint place = m_stage->field.pos() + QPoint(12, 20);

        m_stage->click(place);
        m_stage->clickSoon(place);
        QCOMPARE(m_stage->field.selectedText(), u"uno"_s);

        m_stage->clickSoon(place);
        QCOMPARE(m_stage->field.selectedText(), u"uno dos"_s);
    }

    // While a popup is open, it gets the presses in it whichever window they come to, and those outside of it
    // too.
    void leavesTheSecondPressToAPopupOnlyOutsideOfIt()
    {
        const DoubleClickGuard guard(nullptr);
        QWidget popup(&m_stage->window, Qt::Popup);
        Surface surface(&popup);
        popup.setGeometry(m_stage->window.geometry().adjusted(0, 0, -200, 0));
        surface.setGeometry(popup.rect());

        m_stage->click(QPoint(195, 190));
        popup.show();
        m_stage->clickSoon(QPoint(195, 190));
        QCOMPARE(surface.presses, 0);
        QCOMPARE(surface.releases, 0);
        QVERIFY(popup.isVisible());

        m_stage->clickSoon(QPoint(203, 190));
        QVERIFY(!popup.isVisible());
    }

    // Qt gives the press that closes a popup once more, at the same time, to what was behind the popup.
    void letsAPressThatIsGivenAgainCount()
    {
        const DoubleClickGuard guard(nullptr);
        const QSignalSpy pressed(&m_stage->button, &QPushButton::pressed);
        const QPoint place = m_stage->center(m_stage->button);

        m_stage->curtain.show();
        QTest::mousePress(m_stage->window.windowHandle(), Qt::LeftButton, {}, place);
        m_stage->curtain.hide();
        --QTest::lastMouseTimestamp;
        QTest::mousePress(m_stage->window.windowHandle(), Qt::LeftButton, {}, place);
        QTest::mouseRelease(m_stage->window.windowHandle(), Qt::LeftButton, {}, place);

        QCOMPARE(pressed.size(), 1);
    }

    void ignoresPressesOfTheProgramItself()
    {
        const DoubleClickGuard guard(nullptr);
        const QSignalSpy clicked(&m_stage->button, &QPushButton::clicked);

        m_stage->click(m_stage->center(m_stage->button));
        m_stage->button.click();
        QTest::keyClick(&m_stage->button, Qt::Key_Space);

        QCOMPARE(clicked.size(), 3);
    }

    void endsWithItsParent()
    {
        {
            QObject parent;
            new DoubleClickGuard(&parent);
        }
        const QSignalSpy clicked(&m_stage->button, &QPushButton::clicked);

        m_stage->click(m_stage->center(m_stage->button));
        m_stage->clickSoon(m_stage->center(m_stage->button));

        QCOMPARE(clicked.size(), 2);
    }

private:
    std::unique_ptr<Stage> m_stage;
};

NUBARIA_TEST_MAIN(DoubleClickGuardTest)
#include "doubleclickguardtest.moc"
