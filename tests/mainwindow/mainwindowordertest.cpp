#include "support/failingopen.h"
#include "support/home.h"
#include "support/journal.h"
#include "support/messageboxes.h"
#include "support/taskform.h"
#include "support/window.h"
#include "support/windowtest.h"

#include <QCheckBox>
#include <QLabel>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace {

QStringList lines(const char *text)
{
    QStringList found = QString::fromUtf8(text).split(u'\n', Qt::SkipEmptyParts);
    for (QString &line : found) {
        line = line.trimmed();
    }
    return found;
}

/// What was noted, whatever the day is, and however long the file.
QStringList steps(const MainWindow &window)
{
    QStringList found = journal::entries();
    for (const char *label : {"LabelDayTxt", "LabelDayMonthTxt", "StorageFile"}) {
        found.replaceInStrings(widget<QLabel>(window, label)->text(), u"..."_s);
    }
    return found;
}

/// What of that concerns the window as a whole, or its first page.
QStringList stepsOnTheWindow(const MainWindow &window)
{
    return steps(window).filter(QRegularExpression(u"^MainWindow\\.(?!show$)|^TasksPage"_s));
}

/// What the click has the program do.
QStringList stepsOfAClickOn(const MainWindow &window, const char *button)
{
    journal::begin();
    click(window, button);
    return steps(window);
}

void writeTwoTasks()
{
    home::writeTasks({home::completeRecord(), home::record(u"{b}"_s, u"beta"_s)});
}

} // namespace

/// The order of the steps, also where what comes of them does not tell it.
class MainWindowOrderTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void buildsTheWindow()
    {
        home::writeTasks({home::record(QString(), u"alfa"_s)});
        journal::begin();

        const MainWindow window;

        const QStringList all = steps(window);
        const qsizetype form = all.indexOf(u"ChangeColorTheme.insertItem 1 Myosotis"_s); // the form is built
        QVERIFY(form > 0);
        QCOMPARE(all.mid(form), lines(R"(
        ChangeColorTheme.insertItem 1 Myosotis
        ChangeColorTheme.insertItem 2 Helianthus
        ChangeColorTheme.insertItem 3 Amapola
        ChangeColorTheme.insertItem 4 Orchidaceae
        ChangeColorTheme.insertItem 5 Jasminum
        ChangeColorTheme.insertItem 6 Hydrangea
        ChangeColorTheme.setEnabled true
        ChangeColorTheme.connect currentIndexChanged
        QuenoliTheme.value colorIndex
        ChangeColorTheme.setCurrentIndex 0
        ChangeTextTheme.connect currentIndexChanged
        Quenoli.value textEmphasis
        ChangeTextTheme.setCurrentIndex 0
        FrameUpdater.setGeometry
        network.get
        MainMenu.setGraphicsEffect
        frameNewTask.setGraphicsEffect
        frameProfileSty.setGraphicsEffect
        QMenu.setStyleSheet QMenu { background-color: white; color: black; } QMenu::item:selected { background-color: #357ABD; color: white; }
        QAction.connect triggered
        QAction.connect triggered
        QMenu.addAction Ajustes
        QMenu.addAction Salir
        QSystemTrayIcon.setContextMenu
        QSystemTrayIcon.connect activated
        QSystemTrayIcon.setIcon
        QSystemTrayIcon.setVisible true
        MainWindow.setFixedSize 1250 700
        TaskTitle.setContextMenuPolicy
        TaskTitle.connect customContextMenuRequested
        TaskDescription.setContextMenuPolicy
        TaskDescription.connect customContextMenuRequested
        DateLimitTask.setContextMenuPolicy
        DateLimitTask.connect customContextMenuRequested
        TaskTitleView.setContextMenuPolicy
        TaskTitleView.connect customContextMenuRequested
        TaskDescriptionView.setContextMenuPolicy
        TaskDescriptionView.connect customContextMenuRequested
        DateLimitTaskView.setContextMenuPolicy
        DateLimitTaskView.connect customContextMenuRequested
        CloseDetailTaskBtn.connect clicked
        DeleteTaskBtn.connect clicked
        FinishTaskBtn.connect clicked
        UpdateTaskBtn.connect clicked
        SimpleNotify.connect stateChanged
        AdvancedNotify.connect stateChanged
        changeClose.connect stateChanged
        Quenoli.value simpleNotify
        SimpleNotify.setChecked true
        Quenoli.value simpleNotify
        Quenoli.setValue simpleNotify true
        QSystemTrayIcon.setVisible true
        Quenoli.value advancedNotify
        AdvancedNotify.setChecked false
        Quenoli.value changeClose
        changeClose.setChecked false
        QTimer.connect timeout
        QTimer.start 86400000
        Quenoli.value lastActivityDate
        SaveProfileInfo.hide
        rmc.json.open ReadOnly
        rmc.json.open WriteOnly
        log rmc.json: se repararon ids faltantes en tareas antiguas.
        rmc.json.open ReadOnly
        QStringListModel.setStringList alfa
        TaskAdvise.hide
        Quenoli.value profilePicturePath
        Quenoli.value firstName
        Quenoli.value email
        UserName.setText Invitado(a)
        UserMail.setText correo@nubaria.example
        Quenoli.value displayMessageIndex
        DisplayMessage.setCurrentIndex 0
        DisplayMessage.connect currentIndexChanged
        Quenoli.value displayMessageIndex
        Quenoli.setValue displayMessageIndex 0
        Quenoli.value firstName
        LabelDayTxt.setText ...
        LabelDayMonthTxt.setText ...
        rmc.json.open ReadOnly
        SavedTasks.setText 1
        StorageFile.setText ...
        fonts.addApplicationFont Gantari-Regular
        fonts.addApplicationFont Gantari-SemiBold
        MainWindow.setStyleSheet QWidget { font-family: Gantari ; background-color: white; }
        locale.setDefault es_MX
        DateLimitTask.setDate
        TasksPage.show
        NewTasksPage.hide
        ProfilePage.hide
        SettingsPage.hide
        PatchPage.hide
        TaskViewButton.setCheckable true
        NewTaskViewButton.setCheckable true
        SettingsViewButton.setCheckable true
        ProfileViewButton.setCheckable true
        PatchNoticesViewButton.setCheckable true
        TaskViewButton.connect clicked
        NewTaskViewButton.connect clicked
        SettingsViewButton.connect clicked
        ProfileViewButton.connect clicked
        PatchNoticesViewButton.connect clicked
        CleanTaskButton.connect clicked
        CancelTaskButton.connect clicked
        SaveTaskButton.connect clicked
        TaskListView.connect doubleClicked
        QItemSelectionModel.connect currentChanged
        SetProfile.connect clicked
        SetProfileInfo.connect clicked
        SaveProfileInfo.connect clicked
        OrderNotesBy.connect currentIndexChanged
        SearchTask.connect textChanged
        CancelUpdate.connect clicked
        StartUpdate.connect clicked
        NubixAdvise.hide
        NubixLoginButton.hide
        server.removeServer QuenoliIPC
        QLocalServer.connect newConnection
        QLocalServer.listen QuenoliIPC)"));
    }

    void changesThePage()
    {
        const MainWindow window;

        QCOMPARE(stepsOfAClickOn(window, "NewTaskViewButton"), lines(R"(
        QItemSelectionModel.clearSelection
        TaskDetail.slide
        TaskViewButton.setChecked false
        NewTaskViewButton.setChecked false
        SettingsViewButton.setChecked false
        ProfileViewButton.setChecked false
        PatchNoticesViewButton.setChecked false
        NewTaskViewButton.setChecked true
        NewTasksPage.show
        TasksPage.hide)"));
    }

    void savesATask()
    {
        writeTwoTasks();
        const MainWindow window;
        click(window, "NewTaskViewButton");
        fillForm(window);
        advice(window)->show();

        QCOMPARE(stepsOfAClickOn(window, "SaveTaskButton"), lines(R"(
        rmc.json.open ReadOnly
        TaskAdvise.hide
        rmc.json.open WriteOnly
        QStringListModel.setStringList Pagar la luz,beta,Comprar piñón
        TaskTitle.clear
        TaskDescription.clear
        CategoryTaskBox.setCurrentIndex -1
        DateLimitTask.setDate
        UrgencyTaskBox.setCurrentIndex -1
        tray.showMessage Tarea agregada
        rmc.json.open ReadOnly
        SavedTasks.setText Tareas guardadas: 3
        StorageFile.setText ...
        TaskViewButton.setChecked true
        NewTaskViewButton.setChecked false
        TasksPage.show
        NewTasksPage.hide)"));
    }

    void savesTheFirstTask()
    {
        const MainWindow window;
        click(window, "NewTaskViewButton");
        fillForm(window);
        advice(window)->hide();
        widget(window, "ProfilePage")->show();

        QCOMPARE(stepsOfAClickOn(window, "SaveTaskButton"), lines(R"(
        rmc.json.open WriteOnly
        TaskAdvise.show
        rmc.json.open WriteOnly
        QStringListModel.setStringList Comprar piñón
        TaskTitle.clear
        TaskDescription.clear
        CategoryTaskBox.setCurrentIndex -1
        DateLimitTask.setDate
        UrgencyTaskBox.setCurrentIndex -1
        TaskAdvise.hide
        tray.showMessage Tarea agregada
        rmc.json.open ReadOnly
        SavedTasks.setText Tareas guardadas: 1
        StorageFile.setText ...
        TaskViewButton.setChecked true
        NewTaskViewButton.setChecked false
        TasksPage.show
        NewTasksPage.hide
        ProfilePage.hide)"));
    }

    void cancelsANewTask()
    {
        const MainWindow window;
        click(window, "NewTaskViewButton");

        QCOMPARE(stepsOfAClickOn(window, "CancelTaskButton"), lines(R"(
        QItemSelectionModel.clearSelection
        TaskDetail.slide
        TaskViewButton.setChecked false
        NewTaskViewButton.setChecked false
        SettingsViewButton.setChecked false
        ProfileViewButton.setChecked false
        PatchNoticesViewButton.setChecked false
        TaskViewButton.setChecked true
        TasksPage.show
        NewTasksPage.hide
        TaskTitle.clear
        TaskDescription.clear
        CategoryTaskBox.setCurrentIndex -1
        DateLimitTask.setDate
        UrgencyTaskBox.setCurrentIndex -1)"));
    }

    void showsATask()
    {
        writeTwoTasks();
        const MainWindow window;
        journal::begin();

        selectRow(window, 0);

        QCOMPARE(steps(window), lines(R"(
        rmc.json.open ReadOnly
        TaskTitleView.setText Pagar la luz
        TaskDescriptionView.setPlainText Recibo en el cajón
        CategoryTaskBoxView.setCurrentText Personal
        DateLimitTaskView.setDate
        UrgencyTaskBoxView.setCurrentText Muy baja
        TaskDetail.slide)"));
    }

    void updatesATask()
    {
        writeTwoTasks();
        const MainWindow window;
        selectRow(window, 0);

        QCOMPARE(stepsOfAClickOn(window, "UpdateTaskBtn"), lines(R"(
        rmc.json.open ReadWrite
        rmc.json.open WriteOnly
        QItemSelectionModel.clearSelection
        TaskDetail.slide
        tray.showMessage Tarea actualizada
        rmc.json.open ReadOnly
        QStringListModel.setStringList Pagar la luz,beta
        rmc.json.open ReadOnly
        SavedTasks.setText Tareas guardadas: 2
        StorageFile.setText ...)"));
    }

    void removesATask()
    {
        writeTwoTasks();
        const MainWindow window;
        selectRow(window, 1);
        const MessageBoxes boxes(QMessageBox::Yes);

        QCOMPARE(stepsOfAClickOn(window, "DeleteTaskBtn"), lines(R"(
        box.show Finalizar Tarea
        QItemSelectionModel.clearSelection
        TaskDetail.slide
        rmc.json.open ReadWrite
        rmc.json.open WriteOnly
        tray.showMessage Tarea eliminada
        rmc.json.open ReadOnly
        QStringListModel.setStringList Pagar la luz
        rmc.json.open ReadOnly
        SavedTasks.setText Tareas guardadas: 1
        StorageFile.setText ...
        rmc.json.open ReadOnly
        SavedTasks.setText Tareas guardadas: 1
        StorageFile.setText ...)"));
    }

    void unlocksTheProfile()
    {
        const MainWindow window;

        QCOMPARE(stepsOfAClickOn(window, "SetProfileInfo"), lines(R"(
        SetProfileInfo.hide
        SaveProfileInfo.show
        UserName.setEnabled true
        UserName.setClearButtonEnabled true
        UserMail.setEnabled true
        UserMail.setClearButtonEnabled true)"));
    }

    void savesTheProfile()
    {
        const MainWindow window;
        click(window, "SetProfileInfo");

        QCOMPARE(stepsOfAClickOn(window, "SaveProfileInfo"), lines(R"(
        Quenoli.setValue firstName Invitado(a)
        Quenoli.setValue email correo@nubaria.example
        Quenoli.value displayMessageIndex
        Quenoli.value firstName
        LabelDayTxt.setText ...
        LabelDayMonthTxt.setText ...
        tray.showMessage Perfil actualizado
        SaveProfileInfo.hide
        SetProfileInfo.show
        UserName.setEnabled false
        UserName.setClearButtonEnabled false
        UserMail.setEnabled false
        UserMail.setClearButtonEnabled false)"));
    }

    void switchesTheNoticesOff()
    {
        const MainWindow window;
        journal::begin();

        widget<QCheckBox>(window, "SimpleNotify")->click();

        QCOMPARE(steps(window), lines(R"(
        Quenoli.value simpleNotify
        Quenoli.setValue simpleNotify false
        QSystemTrayIcon.setVisible false)"));
    }

    void hidesAndOpensTheDownloadPage()
    {
        MainWindow window;
        window.show();
        widget<QCheckBox>(window, "changeClose")->setChecked(true);

        QCOMPARE(stepsOfAClickOn(window, "StartUpdate"), lines(R"(
        MainWindow.close
        Quenoli.setValue simpleNotify true
        Quenoli.setValue advancedNotify false
        Quenoli.setValue changeClose true
        MainWindow.hide
        desktop.openUrl /updates/nubaria/version)"));
    }

    void returnsFromTheTray()
    {
        MainWindow window;
        click(window, "ProfileViewButton");
        journal::begin();

        callSlot(window, "trayIconActivated", QSystemTrayIcon::DoubleClick);

        QCOMPARE(stepsOnTheWindow(window), lines(R"(
        TasksPage.show
        MainWindow.showNormal
        MainWindow.activateWindow
        MainWindow.raise)"));
    }

    void answersASecondStart()
    {
        MainWindow window;
        window.showMinimized();
        journal::begin();

        callSlot(window, "handleNewInstanceConnection");

        QCOMPARE(stepsOnTheWindow(window), lines(R"(
        MainWindow.showNormal
        MainWindow.raise
        MainWindow.activateWindow
        MainWindow.alert 0)"));
    }

    void logsAFailureBeforeItTellsTheUser()
    {
        writeTwoTasks();
        MainWindow window;
        selectRow(window, 0);
        const FailingOpen readOnly(O_RDONLY);
        const MessageBoxes boxes;
        journal::begin();

        callSlot(window, "orderTasks", 1);

        const QString line
            = u"log Failed to open file for reading: "_s + u'"' + FailingOpen::errorString() + u'"';
        QCOMPARE(steps(window), QStringList({u"rmc.json.open ReadOnly"_s, line, u"box.show Error"_s}));

        const FailingOpen readWrite(O_RDWR);
        journal::begin();

        callSlot(window, "updateTask");

        QCOMPARE(
            steps(window), QStringList({u"rmc.json.open ReadWrite"_s, line, u"tray.showMessage Error"_s}));
    }
};

NUBARIA_TEST_MAIN(MainWindowOrderTest)
#include "mainwindowordertest.moc"
