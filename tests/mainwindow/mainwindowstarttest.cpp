#include "support/failingopen.h"
#include "support/home.h"
#include "support/messageboxes.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFileInfo>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

// A test builds its tables once, at its start.
// clazy:excludeall=non-pod-global-static
const QStringList pages
    = {u"TasksPage"_s, u"NewTasksPage"_s, u"SettingsPage"_s, u"ProfilePage"_s, u"PatchPage"_s};
const QStringList navigationButtons = {u"TaskViewButton"_s, u"NewTaskViewButton"_s, u"SettingsViewButton"_s,
    u"ProfileViewButton"_s, u"PatchNoticesViewButton"_s};

// The parts of the start that show in a window, in their order, as far as they have been done.
QStringList doneIn(const QWidget &window)
{
    const auto isHidden = [&window](const char *name) {
        return widget(window, name)->isHidden();
    };
    const auto hasChild = [&window](const char *type) {
        const QObjectList &children = window.children();
        return std::any_of(
            children.begin(), children.end(), [type](const QObject *child) { return child->inherits(type); });
    };
    const std::initializer_list<std::pair<QString, bool>> parts = {
        {u"themes"_s, widget<QComboBox>(window, "ChangeColorTheme")->count() == 7},
        {u"banner"_s, widget(window, "FrameUpdater")->x() == -230},
        {u"shadows"_s, widget(window, "MainMenu")->graphicsEffect() != nullptr},
        {u"tray icon"_s, hasChild("QSystemTrayIcon")},
        {u"edit menus"_s, widget(window, "DateLimitTaskView")->contextMenuPolicy() == Qt::CustomContextMenu},
        {u"check boxes"_s, widget<QCheckBox>(window, "SimpleNotify")->isChecked()},
        {u"reminders"_s, hasChild("QTimer")},
        {u"profile button"_s, isHidden("SaveProfileInfo")},
        {u"tasks"_s, !widget<QLineEdit>(window, "UserName")->text().isEmpty()},
        {u"greeting"_s, widget<QLabel>(window, "LabelDayTxt")->text() != "currentDay()"_L1},
        {u"statistics"_s, widget<QLabel>(window, "SavedTasks")->text() != "00"_L1},
        {u"base style"_s, !window.styleSheet().isEmpty()},
        {u"locale"_s, window.locale().language() == QLocale::Spanish},
        {u"pages"_s, isHidden("PatchPage")},
        {u"checkable buttons"_s, widget<QPushButton>(window, "NewTaskViewButton")->isCheckable()},
        {u"list"_s, widget<QListView>(window, "TaskListView")->model() != nullptr},
        {u"cloud account"_s, isHidden("NubixAdvise")},
        {u"server"_s, hasChild("QLocalServer")},
    };
    QStringList done;
    for (const auto &[part, isDone] : parts) {
        if (isDone) {
            done.append(part);
        }
    }
    return done;
}

// Looks at a window that is still being built, from the box that an unreadable task file opens on the way.
class HalfwayLook final : public QObject
{
public:
    HalfwayLook()
    {
        connect(&m_poll, &QTimer::timeout, this, &HalfwayLook::look);
        m_poll.start(1);
    }

    QStringList done;

private:
    void look()
    {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (box && box->isVisible()) {
            done = doneIn(*box->parentWidget());
            box->reject();
        }
    }

    QTimer m_poll;
};

// What is hidden while a window is built, and when its own style and locale are set in between.
class HidingLog final : public QObject
{
public:
    HidingLog() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const QString name = watched->objectName();
        const bool isOfTheForm = !name.isEmpty() && name.at(0).isUpper(); // unlike Qt's own helpers
        if (event->type() == QEvent::HideToParent && isOfTheForm) {
            entries.append(name);
        } else if (event->type() == QEvent::StyleChange && name == "MainWindow"_L1) {
            entries.append(u"style"_s);
        } else if (event->type() == QEvent::LocaleChange && name == "MainWindow"_L1) {
            entries.append(u"locale"_s);
        }
        return false;
    }

    QStringList entries;
};

} // namespace

class MainWindowStartTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void init()
    {
        WindowTest::init();
        QLocale::setDefault(QLocale::c());
    }

    void showsItsDefaultsAtAFirstStart()
    {
        const MainWindow window;

        QCOMPARE(widget<QComboBox>(window, "ChangeColorTheme")->currentText(), u"Bugambilia"_s);
        QCOMPARE(widget<QComboBox>(window, "ChangeTextTheme")->currentIndex(), 0);
        QCOMPARE(widget<QComboBox>(window, "DisplayMessage")->currentIndex(), 0);
        QVERIFY(widget<QCheckBox>(window, "SimpleNotify")->isChecked());
        QVERIFY(!widget<QCheckBox>(window, "AdvancedNotify")->isChecked());
        QVERIFY(!widget<QCheckBox>(window, "changeClose")->isChecked());
        QCOMPARE(home::preference(u"simpleNotify"_s), QVariant(true));
        QVERIFY(!widget(window, "TasksPage")->isHidden());
        QVERIFY(!QRect(0, 0, 1250, 700).intersects(widget(window, "FrameUpdater")->geometry()));
        QVERIFY(traymessages::all().isEmpty());
    }

    void getsAsFarAsTheTasksBeforeItLoadsThem()
    {
        home::writeTasks({});
        const FailingOpen failure(O_RDONLY);
        const HalfwayLook halfway;
        QTest::ignoreMessage(
            QtCriticalMsg, "No se pudo abrir rmc.json para reparar ids: \"Permission denied\"");
        QTest::ignoreMessage(QtCriticalMsg, "Failed to open file for reading: \"Permission denied\"");

        const MainWindow window;

        const QStringList firstHalf = {u"themes"_s, u"banner"_s, u"shadows"_s, u"tray icon"_s,
            u"edit menus"_s, u"check boxes"_s, u"reminders"_s, u"profile button"_s};
        const QStringList secondHalf = {u"tasks"_s, u"greeting"_s, u"statistics"_s, u"base style"_s,
            u"locale"_s, u"pages"_s, u"checkable buttons"_s, u"list"_s, u"cloud account"_s, u"server"_s};
        QCOMPARE(halfway.done, firstHalf);
        QCOMPARE(doneIn(window), firstHalf + secondHalf);
    }

    void hidesWidgetsAndSetsStyleAndLocaleInOrder()
    {
        home::writeTasks({});
        HidingLog log;

        const MainWindow window;

        const QStringList expected
            = {u"SaveProfileInfo"_s, u"TaskAdvise"_s, u"style"_s, u"locale"_s, u"NewTasksPage"_s,
                u"ProfilePage"_s, u"SettingsPage"_s, u"PatchPage"_s, u"NubixAdvise"_s, u"NubixLoginButton"_s};
        QCOMPARE(log.entries, expected);
    }

    void wearsItsFontBeforeItIsShown()
    {
        const MainWindow window;

        const auto widgets = window.centralWidget()->findChildren<QWidget *>();
        for (const QWidget *child : widgets) {
            QVERIFY2(child->font().families() == QStringList(u"Gantari"_s), qPrintable(child->objectName()));
        }
    }

    void repairsIdsBeforeItLoadsTheTasks()
    {
        QJsonObject old = home::record(QString(), u"Pagar la renta"_s);
        old.remove("id"_L1);
        home::writeTasks({old});
        QTest::ignoreMessage(QtInfoMsg, "rmc.json: se repararon ids faltantes en tareas antiguas.");
        const MainWindow window;
        auto *list = widget<QListView>(window, "TaskListView");
        const MessageBoxes boxes;

        list->setCurrentIndex(list->model()->index(0, 0));

        QCOMPARE(boxes.shown().size(), 0);
        QCOMPARE(widget<QLineEdit>(window, "TaskTitleView")->text(), u"Pagar la renta"_s);
        QCOMPARE(widget<QLabel>(window, "StorageFile")->text(),
            QString::number(QFileInfo(home::taskFile()).size()) + ".00 B"_L1);
    }

    void loadsTasksProfileAndGreeting()
    {
        home::writeTasks({home::record(u"{a}"_s, u"Uno"_s), home::record(u"{b}"_s, u"Dos"_s)});
        QImage photo(80, 60, QImage::Format_RGB32);
        photo.fill(Qt::red);
        const QString path = QDir::homePath() + "/foto.png"_L1;
        QVERIFY(photo.save(path));
        home::setPreference(u"profilePicturePath"_s, path);
        home::setPreference(u"firstName"_s, u"Íñigo"_s);
        home::setPreference(u"email"_s, u"inigo@casa.example"_s);
        home::setPreference(u"displayMessageIndex"_s, 2);

        const MainWindow window;

        QCOMPARE(shownTitles(window), QStringList({u"Uno"_s, u"Dos"_s}));
        QCOMPARE(
            widget<QLabel>(window, "ProfilePicture")->pixmap().toImage().pixelColor(37, 37), QColor(Qt::red));
        QCOMPARE(widget<QLineEdit>(window, "UserName")->text(), u"Íñigo"_s);
        QCOMPARE(widget<QLineEdit>(window, "UserMail")->text(), u"inigo@casa.example"_s);
        QCOMPARE(widget<QComboBox>(window, "DisplayMessage")->currentIndex(), 2);
        QCOMPARE(widget<QLabel>(window, "LabelDayTxt")->text(), u"¡Hola, Íñigo!"_s);
    }

    void showsBareStatistics()
    {
        home::writeBytes(R"([{"id":"{a}"},{"id":"{b}"},{"id":"{c}"}])");

        const MainWindow window;

        QCOMPARE(widget<QLabel>(window, "SavedTasks")->text(), u"3"_s);
        QCOMPARE(widget<QLabel>(window, "StorageFile")->text(), u"40.00 B"_s);
    }

    void wearsItsOwnTypefaceOnWhite()
    {
        const MainWindow window;

        QCOMPARE(window.styleSheet(), u"QWidget { font-family: Gantari ; background-color: white; }"_s);
        QVERIFY(QFontDatabase::families().contains(u"Gantari"_s));
        QCOMPARE(QFontDatabase::weight(u"Gantari"_s, u"Regular"_s), 400);
        QCOMPARE(QFontDatabase::weight(u"Gantari"_s, u"SemiBold"_s), 600);
    }

    void speaksMexicanSpanish()
    {
        const QLocale mexican(QLocale::Spanish, QLocale::Mexico);

        const MainWindow window;

        QCOMPARE(QLocale(), mexican);
        QCOMPARE(window.locale(), mexican);
    }

    void writesDatesTheMexicanWay_data()
    {
        QTest::addColumn<QByteArray>("edit");
        QTest::newRow("new task") << QByteArray("DateLimitTask");
        QTest::newRow("detail panel") << QByteArray("DateLimitTaskView");
        QTest::newRow("unused panel") << QByteArray("DateLimitTaskView_2");
    }

    void writesDatesTheMexicanWay()
    {
        QFETCH(QByteArray, edit);
        const MainWindow window;
        auto *date = widget<QDateEdit>(window, edit.constData());

        date->setDate(QDate(2027, 3, 5));

        QCOMPARE(date->displayFormat(), u"dd/MM/yy"_s);
        QCOMPARE(date->text(), u"05/03/27"_s);
        QCOMPARE(date->locale(), QLocale(QLocale::Spanish, QLocale::Mexico));
        QCOMPARE(date->calendarWidget()->locale().monthName(3), u"marzo"_s);
    }

    void proposesTodayAsDeadline()
    {
        const QDate before = QDate::currentDate();
        const MainWindow window;
        const QDate after = QDate::currentDate();

        const QDate proposed = widget<QDateEdit>(window, "DateLimitTask")->date();
        QVERIFY2(proposed == before || proposed == after, qPrintable(proposed.toString(Qt::ISODate)));
    }

    void opensOnTheTasksPageWithCheckableButtons()
    {
        const MainWindow window;

        QStringList shown;
        for (const QString &page : pages) {
            if (!window.findChild<QWidget *>(page)->isHidden()) {
                shown.append(page);
            }
        }
        QCOMPARE(shown, QStringList(u"TasksPage"_s));
        QStringList checked;
        for (const QString &name : navigationButtons) {
            const auto *button = window.findChild<QPushButton *>(name);
            QVERIFY2(button->isCheckable(), qPrintable(name));
            if (button->isChecked()) {
                checked.append(name);
            }
        }
        QCOMPARE(checked, QStringList(u"TaskViewButton"_s));
    }

    void hidesTheCloudAccountAndTheSaveButtonOfTheProfile()
    {
        const MainWindow window;

        QVERIFY(widget(window, "NubixAdvise")->isHidden());
        QVERIFY(widget(window, "NubixLoginButton")->isHidden());
        QVERIFY(widget(window, "SaveProfileInfo")->isHidden());
        QVERIFY(!widget(window, "SetProfileInfo")->isHidden());
    }
};

NUBARIA_TEST_MAIN(MainWindowStartTest)
#include "mainwindowstarttest.moc"
