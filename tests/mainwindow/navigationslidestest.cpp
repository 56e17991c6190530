#include "support/home.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QAnimationDriver>
#include <QPropertyAnimation>
#include <QPushButton>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

// Time for animations that stands still but for `pass`, so that a slide can be looked at in any moment of it.
class StoppedTime final : public QAnimationDriver
{
public:
    StoppedTime()
    {
        install();
        // Time runs on while anything is animated, and lags behind the clock only where it starts.
        m_pulse.setStartValue(0);
        m_pulse.setEndValue(1);
        m_pulse.setLoopCount(-1);
        m_pulse.start();
        while (!isRunning()) {
            QCoreApplication::processEvents();
        }
        advanceAnimation();
    }
    ~StoppedTime() override { uninstall(); }

    qint64 elapsed() const override { return m_elapsed; }

    void pass(int milliseconds)
    {
        // What has been started joins the running animations after two rounds of queued calls.
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        m_elapsed += milliseconds;
        advanceAnimation();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

private:
    QVariantAnimation m_pulse;
    qint64 m_elapsed = 0;
};

// What an animation was told to do, and the object that owns it.
struct Slide
{
    QString target;
    QByteArray property;
    int duration;
    QEasingCurve::Type easing;
    QRect start;
    QRect end;
    const QObject *parent;

    bool operator==(const Slide &other) const = default;
};

// Every animation that deletes itself while this lives. One without a parent cannot be found in another way.
class EndedSlides final : public QObject
{
public:
    EndedSlides() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *animation = qobject_cast<QPropertyAnimation *>(watched);
        if (animation && event->type() == QEvent::DeferredDelete) {
            const QObject *target = animation->targetObject(); // null when it has gone already
            all.append({target ? target->objectName() : QString(), animation->propertyName(),
                animation->duration(), animation->easingCurve().type(), animation->startValue().toRect(),
                animation->endValue().toRect(), animation->parent()});
        }
        return false;
    }

    QList<Slide> all;
};

// The events of these types that a widget gets, in their order.
class EventLog final : public QObject
{
public:
    EventLog(QWidget *watched, const QList<QEvent::Type> &types)
        : m_types(types)
    {
        watched->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (m_types.contains(event->type())) {
            seen.append(event->type());
        }
        return false;
    }

    QList<QEvent::Type> seen;

private:
    QList<QEvent::Type> m_types;
};

} // namespace

class NavigationSlidesTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        WindowTest::init();
        time = std::make_unique<StoppedTime>();
    }

    void cleanup()
    {
        time->pass(1000); // the animations of a window that has gone notice it at their next step
        time.reset();
    }

    void slidesTheOpenPanelOutWhenThePageChanges()
    {
        home::writeTasks({home::record(u"{a}"_s, u"Uno"_s)});
        const MainWindow window;
        const QWidget *panel = openPanelOf(window);
        const auto *list = widget<QListView>(window, "TaskListView");
        QVERIFY(list->selectionModel()->hasSelection());

        widget<QPushButton>(window, "SettingsViewButton")->click();

        QVERIFY(!list->selectionModel()->hasSelection());
        QCOMPARE(list->currentIndex().row(), 0);
        QCOMPARE(panel->geometry(), openPanel);
        time->pass(125);
        QCOMPARE(panel->geometry(), QRect(126, 0, 1010, 700));
        time->pass(124);
        QVERIFY(panel->geometry() != closedPanel);
        time->pass(1);
        QCOMPARE(panel->geometry(), closedPanel);
    }

    void keepsACheckedButtonCheckedAndSlidesThePanelOutAgain()
    {
        home::writeTasks({home::record(u"{a}"_s, u"Uno"_s)});
        const MainWindow window;
        const QWidget *panel = openPanelOf(window);
        auto *button = widget<QPushButton>(window, "TaskViewButton");
        QVERIFY(button->isChecked());
        for (int i = 0; i < 2; ++i) {
            EndedSlides slides;

            button->click();

            QVERIFY(button->isChecked());
            QVERIFY(!widget(window, "TasksPage")->isHidden());
            time->pass(250);
            QCOMPARE(slides.all.size(), 1);
            QCOMPARE(slides.all.first().target, u"TaskDetail"_s);
            QCOMPARE(panel->geometry(), closedPanel);
        }
    }

    void closesThePanelFromWhereverItIs()
    {
        MainWindow window;
        auto *panel = widget(window, "TaskDetail");
        panel->setGeometry(400, 20, 1000, 600);
        const EndedSlides slides;

        widget<QPushButton>(window, "CloseDetailTaskBtn")->click();
        time->pass(250);

        const QList<Slide> expected = {{u"TaskDetail"_s, "geometry", 250, QEasingCurve::InCubic,
            QRect(400, 20, 1000, 600), closedPanel, nullptr}};
        QVERIFY(slides.all == expected);
        QCOMPARE(panel->geometry(), closedPanel);
    }

    void opensThePanelFromWhereverItIs()
    {
        home::writeTasks({home::record(u"{a}"_s, u"Uno"_s)});
        const MainWindow window;
        auto *panel = widget(window, "TaskDetail");
        panel->setGeometry(400, 20, 1000, 600);
        const EndedSlides slides;

        selectRow(window, 0);
        time->pass(125);
        QCOMPARE(panel->x(), 50);
        time->pass(125);

        const QList<Slide> expected = {{u"TaskDetail"_s, "geometry", 250, QEasingCurve::OutCubic,
            QRect(400, 20, 1000, 600), openPanel, nullptr}};
        QVERIFY(slides.all == expected);
        QCOMPARE(panel->geometry(), openPanel);
    }

    void endsWhereTheLatestSlideOfThePanelLeads()
    {
        home::writeTasks({home::record(u"{a}"_s, u"Uno"_s)});
        const MainWindow window;
        const QWidget *panel = widget(window, "TaskDetail");
        selectRow(window, 0);
        time->pass(125);
        QCOMPARE(panel->x(), 126);

        widget<QPushButton>(window, "CloseDetailTaskBtn")->click();
        time->pass(125);
        QCOMPARE(panel->x(), 236);
        time->pass(125);

        QCOMPARE(panel->geometry(), closedPanel);
    }

    void slidesTheBanner_data()
    {
        QTest::addColumn<QByteArray>("slot");
        QTest::addColumn<QEasingCurve::Type>("easing");
        QTest::addColumn<QRect>("start");
        QTest::addColumn<QRect>("end");
        QTest::addColumn<int>("halfway");
        QTest::newRow("in") << QByteArray("showUpdateMessage") << QEasingCurve::OutCubic << closedBanner
                            << openBanner << -20;
        QTest::newRow("out") << QByteArray("closeUpdateMessage") << QEasingCurve::InCubic << openBanner
                             << closedBanner << -20;
    }

    void slidesTheBanner()
    {
        QFETCH(QByteArray, slot);
        QFETCH(QEasingCurve::Type, easing);
        QFETCH(QRect, start);
        QFETCH(QRect, end);
        QFETCH(int, halfway);
        MainWindow window;
        const QWidget *banner = widget(window, "FrameUpdater");
        const EndedSlides slides;

        callSlot(window, slot.constData());

        const auto running = window.findChildren<QPropertyAnimation *>();
        QCOMPARE(running.size(), 1);
        QCOMPARE(running.first()->state(), QAbstractAnimation::Running);
        QCOMPARE(banner->geometry(), start);
        time->pass(75);
        QCOMPARE(banner->x(), halfway);
        time->pass(74);
        QVERIFY(banner->geometry() != end);
        time->pass(1);
        QCOMPARE(banner->geometry(), end);
        const QList<Slide> expected = {{u"FrameUpdater"_s, "geometry", 150, easing, start, end, &window}};
        QVERIFY(slides.all == expected);
        QVERIFY(window.findChildren<QPropertyAnimation *>().isEmpty());
    }

    void runsTheSecondSlideFromTheVisiblePlaceWhenTheBannerIsClosedTwice()
    {
        MainWindow window;
        const QWidget *banner = widget(window, "FrameUpdater");
        auto *close = widget<QPushButton>(window, "CancelUpdate");
        callSlot(window, "showUpdateMessage");
        time->pass(150);
        close->click();
        time->pass(150);
        QCOMPARE(banner->geometry(), closedBanner);

        close->click();

        QCOMPARE(banner->geometry(), openBanner);
        time->pass(150);
        QCOMPARE(banner->geometry(), closedBanner);
    }

    void startsTheBannersSlideAnewInTheMiddleOfAnother()
    {
        const MainWindow window;
        const QWidget *banner = widget(window, "FrameUpdater");
        auto *close = widget<QPushButton>(window, "CancelUpdate");
        close->click();
        time->pass(100);
        QVERIFY(banner->geometry() != openBanner);

        close->click();

        QCOMPARE(banner->geometry(), openBanner);
        time->pass(149);
        QVERIFY(banner->geometry() != closedBanner);
        time->pass(1);
        QCOMPARE(banner->geometry(), closedBanner);
    }

    void movesTheBannerWithoutShowingHidingOrRaisingIt()
    {
        MainWindow window;
        window.show();
        auto *banner = widget(window, "FrameUpdater");
        widget(window, "PatchNoticesViewButton")->raise();
        const EventLog log(banner,
            {QEvent::Show, QEvent::Hide, QEvent::ShowToParent, QEvent::HideToParent, QEvent::ZOrderChange});
        callSlot(window, "showUpdateMessage");
        time->pass(150);
        callSlot(window, "closeUpdateMessage");
        time->pass(150);
        QVERIFY(log.seen.isEmpty());
        QVERIFY(banner->isVisible());

        banner->hide();
        callSlot(window, "showUpdateMessage");
        time->pass(150);

        QVERIFY(banner->isHidden());
        QCOMPARE(banner->geometry(), openBanner);
    }

    void goesAwayInTheMiddleOfItsSlides()
    {
        home::writeTasks({home::record(u"{a}"_s, u"Uno"_s)});
        auto window = std::make_unique<MainWindow>();
        window->show();
        selectRow(*window, 0);
        callSlot(*window, "showUpdateMessage");
        time->pass(50);
        const EndedSlides slides;
        QTest::failOnWarning(QRegularExpression(u".*"_s));

        window.reset();
        time->pass(50);

        // The panel's slide has no parent and still does not outlive the panel; the banner's goes with the
        // window.
        QCOMPARE(slides.all.size(), 1);
        QCOMPARE(slides.all.first().target, QString());
        QCOMPARE(slides.all.first().duration, 250);
    }

private:
    QWidget *openPanelOf(const MainWindow &window) const
    {
        selectRow(window, 0);
        time->pass(250);
        auto *panel = widget(window, "TaskDetail");
        if (panel->geometry() != openPanel) {
            qFatal("the detail panel did not open");
        }
        return panel;
    }

    std::unique_ptr<StoppedTime> time;
};

NUBARIA_TEST_MAIN(NavigationSlidesTest)
#include "navigationslidestest.moc"
