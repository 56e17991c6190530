#include "support/home.h"
#include "support/settingswidgets.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QAction>
#include <QCheckBox>
#include <QLocalSocket>
#include <QMenu>
#include <QPushButton>
#include <QSignalBlocker>

using namespace Qt::Literals::StringLiterals;

namespace {

QSystemTrayIcon &trayIcon(const MainWindow &window)
{
    return *window.findChild<QSystemTrayIcon *>();
}

QAction &trayAction(const MainWindow &window, const QString &text)
{
    const QList<QAction *> actions = trayIcon(window).contextMenu()->actions();
    for (QAction *action : actions) {
        if (action->text() == text) {
            return *action;
        }
    }
    qFatal("no such action in the tray");
}

bool showsPage(const MainWindow &window, const char *page)
{
    return !widget(window, page)->isHidden();
}

// Whether the tasks page was there when the window appeared, and whether the window was raised.
class WindowEvents final : public QObject
{
public:
    explicit WindowEvents(MainWindow &window)
        : m_window(window)
    {
        window.installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Show) {
            shownOnTasksPage = showsPage(m_window, "TasksPage");
        }
        wasRaised = wasRaised || event->type() == QEvent::ZOrderChange;
        return false;
    }

    bool shownOnTasksPage = false;
    bool wasRaised = false;

private:
    MainWindow &m_window;
};

} // namespace

class TrayTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void actsOnADoubleClickOnly_data()
    {
        QTest::addColumn<QSystemTrayIcon::ActivationReason>("reason");
        QTest::addColumn<bool>("acts");
        QTest::newRow("unknown") << QSystemTrayIcon::Unknown << false;
        QTest::newRow("context menu") << QSystemTrayIcon::Context << false;
        QTest::newRow("double click") << QSystemTrayIcon::DoubleClick << true;
        QTest::newRow("single click") << QSystemTrayIcon::Trigger << false;
        QTest::newRow("middle click") << QSystemTrayIcon::MiddleClick << false;
    }

    void actsOnADoubleClickOnly()
    {
        QFETCH(QSystemTrayIcon::ActivationReason, reason);
        QFETCH(bool, acts);
        MainWindow window;
        callSlot(window, "onSettingsViewButtonClicked");

        emit trayIcon(window).activated(reason);
        QCOMPARE(window.isVisible(), acts);
        QCOMPARE(showsPage(window, "TasksPage"), acts);

        callSlot(window, "onSettingsViewButtonClicked");
        window.show();
        emit trayIcon(window).activated(reason);
        QVERIFY(window.isVisible());
        QCOMPARE(showsPage(window, "TasksPage"), acts);
        QCOMPARE(showsPage(window, "SettingsPage"), !acts);
    }

    void bringsTheWindowBackOnTheTasksPage_data()
    {
        QTest::addColumn<bool>("hidden");
        QTest::addColumn<bool>("minimized");
        QTest::newRow("covered") << false << false;
        QTest::newRow("hidden") << true << false;
        QTest::newRow("minimized") << false << true;
        QTest::newRow("minimized and hidden") << true << true;
    }

    void bringsTheWindowBackOnTheTasksPage()
    {
        QFETCH(bool, hidden);
        QFETCH(bool, minimized);
        MainWindow window;
        window.show();
        callSlot(window, "onProfileViewButtonClicked");
        window.setWindowState(minimized ? Qt::WindowMinimized : Qt::WindowNoState);
        window.setVisible(!hidden);
        QWidget cover;
        cover.show();
        cover.activateWindow();
        QTRY_VERIFY(cover.isActiveWindow());
        const WindowEvents events(window);

        emit trayIcon(window).activated(QSystemTrayIcon::DoubleClick);

        QVERIFY(window.isVisible());
        QVERIFY(!window.isMinimized());
        QVERIFY(showsPage(window, "TasksPage"));
        QVERIFY(!showsPage(window, "ProfilePage"));
        QVERIFY(widget<QPushButton>(window, "TaskViewButton")->isChecked());
        QCOMPARE(events.shownOnTasksPage, hidden);
        QVERIFY(events.wasRaised);
        QTRY_VERIFY(window.isActiveWindow());
    }

    void switchesAHiddenWindowToTheSettingsPageWithoutShowingIt()
    {
        MainWindow window;
        window.show();
        box(window, "changeClose").setChecked(true);
        window.close();
        QVERIFY(!window.isVisible());

        trayAction(window, u"Ajustes"_s).trigger();

        QVERIFY(!window.isVisible());
        QVERIFY(showsPage(window, "SettingsPage"));
        QVERIFY(!showsPage(window, "TasksPage"));
        QVERIFY(widget<QPushButton>(window, "SettingsViewButton")->isChecked());
    }

    void restoresAMinimizedWindowOnTheSettingsPage_data()
    {
        QTest::addColumn<bool>("hidden");
        QTest::newRow("minimized") << false;
        QTest::newRow("minimized and hidden") << true;
    }

    void restoresAMinimizedWindowOnTheSettingsPage()
    {
        QFETCH(bool, hidden);
        MainWindow window;
        window.showMinimized();
        window.setVisible(!hidden);
        QVERIFY(window.isMinimized());

        trayAction(window, u"Ajustes"_s).trigger();

        QVERIFY(!window.isMinimized());
        QVERIFY(window.isVisible());
        QVERIFY(showsPage(window, "SettingsPage"));
    }

    void leavesAWindowThatIsMerelyCoveredWhereItIs()
    {
        MainWindow window;
        window.show();
        const WindowEvents events(window);

        trayAction(window, u"Ajustes"_s).trigger();

        QVERIFY(showsPage(window, "SettingsPage"));
        QVERIFY(!events.wasRaised);
    }

    void storesWhatABoxWasSwitchedTo_data()
    {
        QTest::addColumn<QByteArray>("slot");
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("state");
        QTest::addColumn<bool>("stored");
        const std::initializer_list<std::pair<const char *, const char *>> handlers
            = {{"handleSimpleNotifyStateChanged", "simpleNotify"},
                {"handleAdvancedNotifyStateChanged", "advancedNotify"},
                {"handleChangeCloseStateChanged", "changeClose"}};
        for (const auto &[slot, key] : handlers) {
            for (const int state : {Qt::Unchecked, Qt::PartiallyChecked, Qt::Checked}) {
                QTest::addRow("%s %d", key, state)
                    << QByteArray(slot) << QString::fromLatin1(key) << state << (state == 2);
            }
        }
    }

    void storesWhatABoxWasSwitchedTo()
    {
        QFETCH(QByteArray, slot);
        QFETCH(QString, key);
        QFETCH(int, state);
        QFETCH(bool, stored);
        MainWindow window;
        home::setPreference(key, !stored);

        callSlot(window, slot.constData(), state);

        QCOMPARE(home::preference(key), QVariant(stored));
        QCOMPARE(trayIcon(window).isVisible(), key != "simpleNotify"_L1 || stored);
    }

    void takesTheTrayIconAwayAndBringsItBackAtOnce()
    {
        const MainWindow window;
        QCheckBox &notify = box(window, "SimpleNotify");
        QVERIFY(notify.isChecked());

        notify.click();
        QVERIFY(!trayIcon(window).isVisible());
        QCOMPARE(home::preference(u"simpleNotify"_s), QVariant(false));
        notify.click();
        QVERIFY(trayIcon(window).isVisible());
        QCOMPARE(home::preference(u"simpleNotify"_s), QVariant(true));
    }

    void keepsTheTrayIconAtAStartWithNotificationsOff()
    {
        home::setPreference(u"simpleNotify"_s, false);

        const MainWindow window;

        QVERIFY(!box(window, "SimpleNotify").isChecked());
        QVERIFY(trayIcon(window).isVisible());
        QCOMPARE(home::preference(u"simpleNotify"_s).toBool(), false);
    }

    void announcesANewTaskWhenNotificationsAreOn()
    {
        MainWindow window;

        callSlot(window, "onTaskAdded");

        const QList<TrayMessage> expected = {{u"Tarea agregada"_s, u"Una nueva tarea ha sido agregada."_s,
            QSystemTrayIcon::Information, 10000, true}};
        QVERIFY(traymessages::all() == expected);
    }

    void announcesNoNewTaskWhenNotificationsAreOff()
    {
        MainWindow window;
        // The box decides, not what is stored.
        const QSignalBlocker blocker(box(window, "SimpleNotify"));
        box(window, "SimpleNotify").setChecked(false);
        QCOMPARE(home::preference(u"simpleNotify"_s), QVariant(true));

        callSlot(window, "onTaskAdded");

        QVERIFY(traymessages::all().isEmpty());
    }

    void sendsMessagesWhateverTheTrayIconsVisibility()
    {
        MainWindow window;
        trayIcon(window).hide();

        callSlot(window, "onTaskAdded");
        box(window, "SimpleNotify").setChecked(false);
        callSlot(window, "updateTask");
        callSlot(window, "saveProfileInfo");

        const QList<TrayMessage> expected = {{u"Tarea agregada"_s, u"Una nueva tarea ha sido agregada."_s,
                                                 QSystemTrayIcon::Information, 10000, false},
            {u"Advertencia"_s, u"Por favor, seleccione una tarea para actualizar."_s,
                QSystemTrayIcon::Information, 10000, false},
            {u"Perfil actualizado"_s, u"La información del perfil ha sido guardada exitosamente."_s,
                QSystemTrayIcon::Information, 10000, false}};
        QVERIFY(traymessages::all() == expected);
    }

    void comesBackByASecondStartAloneWhenHiddenWithoutTrayIcon()
    {
        MainWindow window;
        window.show();
        box(window, "changeClose").setChecked(true);
        box(window, "SimpleNotify").setChecked(false);
        window.close();
        QVERIFY(!window.isVisible());
        QVERIFY(!trayIcon(window).isVisible());

        QLocalSocket secondStart;
        secondStart.connectToServer(u"QuenoliIPC"_s);

        QTRY_VERIFY(window.isVisible());
        QVERIFY(!trayIcon(window).isVisible());
    }
};

NUBARIA_TEST_MAIN(TrayTest)
#include "traytest.moc"
