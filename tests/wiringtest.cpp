#include "support/failingopen.h"
#include "support/home.h"
#include "support/messageboxes.h"
#include "support/taskform.h"
#include "support/testmain.h"
#include "support/traymessages.h"
#include "support/window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString removalQuestion = u"¿Está seguro de que desea finalizar y eliminar esta tarea?"_s;

void writeThreeTasks()
{
    home::writeTasks({home::record(u"{b}"_s, u"beta"_s), home::record(u"{z}"_s, u"Zeta"_s),
        home::record(u"{a}"_s, u"alfa"_s)});
}

// Rejects the file dialogs that open while it lives, and counts them.
class FileDialogs final : public QObject
{
public:
    FileDialogs()
    {
        connect(&m_poll, &QTimer::timeout, this, &FileDialogs::rejectOpenDialog);
        m_poll.start(1);
    }

    QStringList titles;

private:
    void rejectOpenDialog()
    {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (dialog && dialog->isVisible()) {
            titles.append(dialog->windowTitle());
            dialog->reject();
        }
    }

    QTimer m_poll;
};

} // namespace

class WiringTest final : public QObject
{
    Q_OBJECT
public slots:
    void keepAddress(const QUrl &address) { openedAddresses.append(address); }

private slots:
    void initTestCase()
    {
        // A quit that is under way would keep every later box and menu from opening.
        QGuiApplication::setQuitOnLastWindowClosed(false);
    }

    void init()
    {
        home::reset();
        traymessages::clear();
        openedAddresses.clear();
    }

    void appliesAChosenTheme()
    {
        const MainWindow window;

        widget<QComboBox>(window, "ChangeColorTheme")->setCurrentIndex(1);

        QVERIFY(widget(window, "SaveTaskButton")->styleSheet().contains("#2ba9e0"_L1));
        QCOMPARE(home::themePreference(u"colorIndex"_s).toInt(), 1);
    }

    void appliesAChosenEmphasis()
    {
        const MainWindow window;

        widget<QComboBox>(window, "ChangeTextTheme")->setCurrentIndex(1);

        QCOMPARE(widget(window, "SaveTaskButton")->font().weight(), 600);
        QCOMPARE(home::preference(u"textEmphasis"_s).toInt(), 1);
    }

    void appliesAChosenGreeting()
    {
        const MainWindow window;

        widget<QComboBox>(window, "DisplayMessage")->setCurrentIndex(2);

        QCOMPARE(widget<QLabel>(window, "LabelDayTxt")->text(), u"¡Hola, Invitado(a)!"_s);
        QCOMPARE(home::preference(u"displayMessageIndex"_s).toInt(), 2);
    }

    void storesAPreferenceWhenItsBoxIsClicked_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("key");
        QTest::newRow("general notices") << u"SimpleNotify"_s << u"simpleNotify"_s;
        QTest::newRow("reminders") << u"AdvancedNotify"_s << u"advancedNotify"_s;
        QTest::newRow("closing") << u"changeClose"_s << u"changeClose"_s;
    }
    void storesAPreferenceWhenItsBoxIsClicked()
    {
        QFETCH(QString, box);
        QFETCH(QString, key);
        const MainWindow window;
        auto *checkBox = widget<QCheckBox>(window, qPrintable(box));
        const bool before = checkBox->isChecked();

        checkBox->click();
        QCOMPARE(home::preference(key).toString(), QVariant(!before).toString());

        checkBox->click();
        QCOMPARE(home::preference(key).toString(), QVariant(before).toString());
    }

    void ordersTheListOnceForEachChosenOrder()
    {
        writeThreeTasks();
        const MainWindow window;
        resetTaskFileOpens();

        widget<QComboBox>(window, "OrderNotesBy")->setCurrentIndex(1);

        QCOMPARE(shownTitles(window), QStringList({u"Zeta"_s, u"alfa"_s, u"beta"_s}));
        QCOMPARE(taskFileOpens(), 1);
    }

    void searchesTheListOnceForEachTypedLetter()
    {
        writeThreeTasks();
        const MainWindow window;
        resetTaskFileOpens();

        QTest::keyClicks(widget(window, "SearchTask"), u"ta"_s);

        QCOMPARE(shownTitles(window), QStringList({u"beta"_s, u"Zeta"_s}));
        QCOMPARE(taskFileOpens(), 2);
    }

    void showsTheTaskThatBecomesCurrent()
    {
        writeThreeTasks();
        const MainWindow window;
        selectRow(window, 0);
        resetTaskFileOpens();

        selectRow(window, 2);

        QCOMPARE(widget<QLineEdit>(window, "TaskTitleView")->text(), u"alfa"_s);
        QCOMPARE(taskFileOpens(), 1);
    }

    void showsADoubleClickedTaskThatIsCurrentAlready()
    {
        writeThreeTasks();
        MainWindow window;
        window.show();
        selectRow(window, 1);
        click(window, "CloseDetailTaskBtn");
        widget<QLineEdit>(window, "TaskTitleView")->clear();
        QListView *list = taskList(window);
        const QPoint row = list->visualRect(list->currentIndex()).center();

        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row);
        QCOMPARE(widget<QLineEdit>(window, "TaskTitleView")->text(), QString());
        resetTaskFileOpens();
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, row);

        QCOMPARE(taskFileOpens(), 1);
        QCOMPARE(widget<QLineEdit>(window, "TaskTitleView")->text(), u"Zeta"_s);
        QTRY_COMPARE(widget(window, "TaskDetail")->x(), 0);
    }

    void closesTheDetailPanel()
    {
        writeThreeTasks();
        const MainWindow window;
        selectRow(window, 0);
        QTRY_COMPARE(widget(window, "TaskDetail")->x(), 0);

        click(window, "CloseDetailTaskBtn");

        QVERIFY(!taskList(window)->selectionModel()->hasSelection());
        QTRY_COMPARE(widget(window, "TaskDetail")->x(), 1010);
    }

    void finishesATaskJustAsItDeletesOne_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::newRow("delete") << QByteArray("DeleteTaskBtn");
        QTest::newRow("finish") << QByteArray("FinishTaskBtn");
    }

    void finishesATaskJustAsItDeletesOne()
    {
        QFETCH(QByteArray, button);
        writeThreeTasks();
        const MainWindow window;
        selectRow(window, 1);
        const MessageBoxes boxes(QMessageBox::Yes);

        click(window, button.constData());

        QCOMPARE(boxes.shown().size(), 1);
        QCOMPARE(boxes.shown().first().title, u"Finalizar Tarea"_s);
        QCOMPARE(boxes.shown().first().text, removalQuestion);
        QCOMPARE(home::tasks(),
            QJsonArray({home::record(u"{b}"_s, u"beta"_s), home::record(u"{a}"_s, u"alfa"_s)}));
        QCOMPARE(shownTitles(window), QStringList({u"beta"_s, u"alfa"_s}));
        QCOMPARE(traymessages::titled(u"Tarea eliminada"_s).size(), 1);
    }

    void updatesATask()
    {
        writeThreeTasks();
        const MainWindow window;
        selectRow(window, 1);
        widget<QLineEdit>(window, "TaskTitleView")->setText(u"Ñandú"_s);

        click(window, "UpdateTaskBtn");

        QCOMPARE(shownTitles(window), QStringList({u"beta"_s, u"Ñandú"_s, u"alfa"_s}));
        QCOMPARE(traymessages::titled(u"Tarea actualizada"_s).size(), 1);
    }

    void cleansTheNewTaskForm()
    {
        const MainWindow window;
        click(window, "NewTaskViewButton");
        fillForm(window, u"Regar las plantas"_s);

        click(window, "CleanTaskButton");

        QCOMPARE(widget<QLineEdit>(window, "TaskTitle")->text(), QString());
        QVERIFY(!widget(window, "NewTasksPage")->isHidden());
    }

    void cancelsANewTask()
    {
        const MainWindow window;
        click(window, "NewTaskViewButton");
        fillForm(window, u"Regar las plantas"_s);

        click(window, "CancelTaskButton");

        QCOMPARE(widget<QLineEdit>(window, "TaskTitle")->text(), QString());
        QVERIFY(!widget(window, "TasksPage")->isHidden());
        QVERIFY(home::tasks().isEmpty());
    }

    void savesANewTaskOnce()
    {
        const MainWindow window;
        click(window, "NewTaskViewButton");
        fillForm(window, u"Regar las plantas"_s);
        const MessageBoxes boxes;

        click(window, "SaveTaskButton");

        QCOMPARE(boxes.shown().size(), 0);
        QCOMPARE(home::tasks().size(), 1);
        QCOMPARE(shownTitles(window), QStringList(u"Regar las plantas"_s));
        QCOMPARE(traymessages::titled(u"Tarea agregada"_s).size(), 1);
    }

    void asksForAPictureOnce()
    {
        const MainWindow window;
        const FileDialogs dialogs;

        click(window, "SetProfile");

        QCOMPARE(dialogs.titles, QStringList(u"Cargar imagen"_s));
    }

    void unlocksAndSavesTheProfile()
    {
        const MainWindow window;

        click(window, "SetProfileInfo");
        QVERIFY(widget(window, "UserName")->isEnabled());
        QVERIFY(!widget(window, "SaveProfileInfo")->isHidden());
        widget<QLineEdit>(window, "UserName")->setText(u"Íñigo"_s);
        click(window, "SaveProfileInfo");

        QVERIFY(!widget(window, "UserName")->isEnabled());
        QCOMPARE(home::preference(u"firstName"_s).toString(), u"Íñigo"_s);
        QCOMPARE(traymessages::titled(u"Perfil actualizado"_s).size(), 1);
    }

    void closesAndOpensTheDownloadPage()
    {
        QDesktopServices::setUrlHandler(u"https"_s, this, "keepAddress");
        MainWindow window;
        window.show();

        click(window, "StartUpdate");
        QDesktopServices::unsetUrlHandler(u"https"_s);

        QVERIFY(!window.isVisible());
        QCOMPARE(openedAddresses.size(), 1);
        QCOMPARE(openedAddresses.first().path(), u"/updates/nubaria/version"_s);
    }

    void remindsWheneverItsTimerRunsOut()
    {
        writeTaskDueInTwoDays();
        home::setPreference(u"advancedNotify"_s, true);
        const MainWindow window;
        QCoreApplication::processEvents();
        QVERIFY(traymessages::titled(u"Tareas por vencer"_s).isEmpty());

        window.findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly)->setInterval(1);

        QTRY_VERIFY(traymessages::titled(u"Tareas por vencer"_s).size() >= 2);
    }

private:
    static void writeTaskDueInTwoDays()
    {
        QJsonObject task = home::record(u"{a}"_s, u"Pagar la renta"_s);
        task["dateLimit"_L1] = QDate::currentDate().addDays(2).toString(u"dd-MM-yyyy");
        home::writeTasks({task});
    }

    QList<QUrl> openedAddresses;
};

NUBARIA_TEST_MAIN(WiringTest)
#include "wiringtest.moc"
