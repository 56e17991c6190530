#include "support/failingopen.h"
#include "support/home.h"
#include "support/loglines.h"
#include "support/settingswidgets.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QAction>
#include <QCloseEvent>
#include <QMenu>
#include <QMessageBox>
#include <QSignalBlocker>
#include <QTimer>

#include <chrono>
#include <functional>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int endedByTheTest = 7;
constexpr int stuck = 8;

QAction &exitAction(const MainWindow &window)
{
    return *window.findChild<QSystemTrayIcon *>()->contextMenu()->actions().last();
}

// Switches a box without its handler, so that only the closing can store it.
void switchSilently(const MainWindow &window, const char *name, bool on)
{
    const QSignalBlocker blocker(box(window, name));
    box(window, name).setChecked(on);
}

/// A window that nothing closes.
class LastingWindow final : public QWidget
{
protected:
    void closeEvent(QCloseEvent *event) override { event->ignore(); }
};

// Runs the program's event loop, does one thing in it and returns what the loop ends with.
int runEventLoop(const std::function<void()> &action)
{
    QTimer start;
    start.setSingleShot(true);
    QObject::connect(&start, &QTimer::timeout, &start, action);
    start.start(0);
    QTimer watchdog;
    QObject::connect(&watchdog, &QTimer::timeout, qApp, [] { QCoreApplication::exit(stuck); });
    watchdog.start(20s);
    return QCoreApplication::exec();
}

// Ends the event loop unless what has been posted to it so far does: the timer then finds it ended.
void endWhenNothingElseDoes(MainWindow &window)
{
    const auto end = [] {
        QCoreApplication::exit(endedByTheTest);
    };
    const auto startTimer = [end, &window] {
        QTimer::singleShot(0, &window, end);
    };
    QMetaObject::invokeMethod(&window, startTimer, Qt::QueuedConnection);
}

// What the three preferences are at the moment in which the window disappears.
class PreferencesAtHide final : public QObject
{
public:
    explicit PreferencesAtHide(MainWindow &window) { window.installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Hide) {
            for (const QString &key : {u"simpleNotify"_s, u"advancedNotify"_s, u"changeClose"_s}) {
                stored.append(home::preference(key));
            }
        }
        return false;
    }

    QVariantList stored;
};

} // namespace

class TrayClosingTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        WindowTest::init();
        QGuiApplication::setQuitOnLastWindowClosed(false);
    }

    void hidesWhenTheUserAskedForThat()
    {
        MainWindow window;
        window.show();
        box(window, "changeClose").setChecked(true);

        QVERIFY(!window.close());

        QVERIFY(!window.isVisible());
    }

    void closesOtherwise()
    {
        MainWindow window;
        window.show();

        QVERIFY(window.close());

        QVERIFY(!window.isVisible());
    }

    void asksTheBoxAndNotTheStoreHowToClose()
    {
        home::setPreference(u"changeClose"_s, true);
        MainWindow window;
        window.show();
        switchSilently(window, "changeClose", false);

        QVERIFY(window.close());
    }

    void storesTheBoxesBeforeTheWindowDisappears_data()
    {
        QTest::addColumn<bool>("simpleNotify");
        QTest::addColumn<bool>("advancedNotify");
        QTest::addColumn<bool>("changeClose");
        QTest::newRow("hides") << false << true << true;
        QTest::newRow("hides, two boxes off") << false << false << true;
        QTest::newRow("closes") << false << true << false;
        QTest::newRow("closes, two boxes on") << true << true << false;
    }

    void storesTheBoxesBeforeTheWindowDisappears()
    {
        QFETCH(bool, simpleNotify);
        QFETCH(bool, advancedNotify);
        QFETCH(bool, changeClose);
        home::setPreference(u"simpleNotify"_s, !simpleNotify);
        home::setPreference(u"advancedNotify"_s, !advancedNotify);
        home::setPreference(u"changeClose"_s, !changeClose);
        MainWindow window;
        window.show();
        switchSilently(window, "SimpleNotify", simpleNotify);
        switchSilently(window, "AdvancedNotify", advancedNotify);
        switchSilently(window, "changeClose", changeClose);
        const PreferencesAtHide preferences(window);

        window.close();

        QCOMPARE(preferences.stored, QVariantList({simpleNotify, advancedNotify, changeClose}));
    }

    void exitActionIsACloseLikeAnyOther_data()
    {
        QTest::addColumn<bool>("changeClose");
        QTest::newRow("hides") << true;
        QTest::newRow("closes") << false;
    }

    void exitActionIsACloseLikeAnyOther()
    {
        QFETCH(bool, changeClose);
        QGuiApplication::setQuitOnLastWindowClosed(true);
        MainWindow window;
        window.show();
        switchSilently(window, "changeClose", changeClose);
        switchSilently(window, "AdvancedNotify", true);

        const int result = runEventLoop([&window] {
            callSlot(window, "exitActionTriggered");
            endWhenNothingElseDoes(window);
        });

        QVERIFY(!window.isVisible());
        QCOMPARE(home::preference(u"advancedNotify"_s), QVariant(true));
        QCOMPARE(result, changeClose ? endedByTheTest : 0);
    }

    void endsTheProgramWhenTheWindowCloses()
    {
        QGuiApplication::setQuitOnLastWindowClosed(true);
        MainWindow window;
        window.show();

        QCOMPARE(runEventLoop([&window] { window.close(); }), 0);
    }

    void keepsTheProgramRunningWhenTheWindowHides()
    {
        QGuiApplication::setQuitOnLastWindowClosed(true);
        MainWindow window;
        window.show();
        box(window, "changeClose").setChecked(true);

        const int result = runEventLoop([&window] {
            window.close();
            endWhenNothingElseDoes(window);
        });

        QCOMPARE(result, endedByTheTest);
        QVERIFY(!window.isVisible());
    }

    void endsTheProgramFromTheTray_data()
    {
        QTest::addColumn<bool>("changeClose");
        QTest::addColumn<Qt::WindowStates>("state");
        QTest::addColumn<bool>("hidden");
        QTest::newRow("shown") << false << Qt::WindowStates(Qt::WindowNoState) << false;
        QTest::newRow("shown, closing hides") << true << Qt::WindowStates(Qt::WindowNoState) << false;
        QTest::newRow("hidden in the tray") << true << Qt::WindowStates(Qt::WindowNoState) << true;
        QTest::newRow("minimized") << true << Qt::WindowStates(Qt::WindowMinimized) << false;
    }

    void endsTheProgramFromTheTray()
    {
        QFETCH(bool, changeClose);
        QFETCH(Qt::WindowStates, state);
        QFETCH(bool, hidden);
        QGuiApplication::setQuitOnLastWindowClosed(true);
        MainWindow window;
        window.show();
        window.setWindowState(state);
        box(window, "changeClose").setChecked(changeClose);
        if (hidden) {
            window.close();
        }
        QCOMPARE(window.isVisible(), !hidden);
        LastingWindow icon; // as where the tray embeds it
        icon.show();

        const int result = runEventLoop([&window] { exitAction(window).trigger(); });

        QCOMPARE(result, 0);
    }

    void endsTheProgramFromTheTrayWhileAQuestionIsOpen()
    {
        home::writeTasks({home::record(u"{a}"_s, u"Uno"_s)});
        QGuiApplication::setQuitOnLastWindowClosed(true);
        MainWindow window;
        window.show();
        auto *list = widget<QListView>(window, "TaskListView");
        list->setCurrentIndex(list->model()->index(0, 0));

        const int result = runEventLoop([&window] {
            QTimer::singleShot(0, &window, [&window] { exitAction(window).trigger(); });
            callSlot(window, "deleteTask");
        });

        QCOMPARE(result, 0);
        QCOMPARE(home::tasks().size(), 1);
    }

    void endsTheProgramFromTheTrayWhileABoxOfTheStartIsOpen()
    {
        home::writeTasks({home::record(u"{a}"_s, u"Uno"_s)});
        const FailingOpen failing(O_RDONLY);
        expectFileError("No se pudo abrir rmc.json para reparar ids:", FailingOpen::errorString());
        expectFileError("Failed to open file for reading:", FailingOpen::errorString());
        QTimer::singleShot(0, qApp, [] {
            auto *open = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            exitAction(*qobject_cast<MainWindow *>(open->parentWidget())).trigger();
        });

        MainWindow window;
        window.show();
        const int result = runEventLoop([&window] { endWhenNothingElseDoes(window); });

        QCOMPARE(result, 0);
    }
};

NUBARIA_TEST_MAIN(TrayClosingTest)
#include "trayclosingtest.moc"
