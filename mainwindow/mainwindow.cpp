#include "mainwindow/mainwindow.h"

#include "core/preferences.h"
#include "mainwindow/instance.h"
#include "ui_mainwindow.h"
#include "widgets/accessibility.h"
#include "widgets/datetyping.h"
#include "widgets/doubleclickguard.h"
#include "widgets/dropshadow.h"
#include "widgets/fleetingmenu.h"
#include "widgets/parkedpanel.h"
#include "widgets/titledelegate.h"
#include "widgets/unbuiltpopups.h"
#include "widgets/wholeswitch.h"

#include <QAction>
#include <QCoreApplication>
#include <QFontDatabase>
#include <QLocalServer>
#include <QMenu>
#include <QStringListModel>
#include <QTimer>

#include <chrono>

using namespace Qt::Literals::StringLiterals;

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
    , ui(new Ui_MainWindow)
    , taskModel(new QStringListModel(this))
    , settings(preferences::mainStore())
    , themeSettings(preferences::themeStore())
{
    offerPageButtonsForPressing();
    tellParkedPanelsAsHidden();
    ui->setupUi(this);
    new UnbuiltPopUps(this);
    nameClearButton(ui->SearchTask);
    nameClearButton(ui->TaskTitle);
    captureBaseStyleSheets(this);
    setUpColorThemes();
    captureBaseFontWeights(this);
    setUpTextEmphasis();
    parkUpdateBanner();
    checkVersion();
    addDropShadows();
    setUpTrayIcon();
    setFixedSize(width(), height());
    suppressEditMenus();
    connectTaskDetail();
    connectPreferences();
    loadSettings();
    startReminderTimer();
    readLastActivityDate();
    ui->SaveProfileInfo->hide();

    repairMissingTaskIds();
    loadTasks();
    loadProfilePicture();
    loadUserInfo();
    loadDisplayMessageSetting();
    setUpGreeting();
    ui->SavedTasks->setText(QString::number(countSavedTasks()));
    ui->StorageFile->setText(formatFileSize(getJsonFileSize()));

    applyBaseStyle();
    useMexicanSpanish();
    ui->DateLimitTask->setDate(QDate::currentDate());
    showFirstPage();
    connectNavigation();
    connectTaskPages();
    connectProfile();
    connectTaskChoice();
    connectUpdateBanner();
    ui->NubixAdvise->hide();
    ui->NubixLoginButton->hide();
    startInstanceServer();
    widenSwitches();
    setUpKeyboard();
    guardInput();
    setUpAssistance();
    if (leaving) {
        // The loop that ended was a box's; the program's own is yet to begin.
        QMetaObject::invokeMethod(this, &MainWindow::leave, Qt::QueuedConnection);
    }
}

MainWindow::~MainWindow()
{
    delete ui;
}

void MainWindow::setUpColorThemes()
{
    for (const QString &name :
        {u"Myosotis"_s, u"Helianthus"_s, u"Amapola"_s, u"Orchidaceae"_s, u"Jasminum"_s, u"Hydrangea"_s}) {
        ui->ChangeColorTheme->addItem(QIcon(), name);
    }
    ui->ChangeColorTheme->setEnabled(true);
    connect(ui->ChangeColorTheme, &QComboBox::currentIndexChanged, this, &MainWindow::applyColorTheme);
    ui->ChangeColorTheme->setCurrentIndex(themeSettings.value(preferences::colorIndex, 0).toInt());
}

void MainWindow::setUpTextEmphasis()
{
    connect(ui->ChangeTextTheme, &QComboBox::currentIndexChanged, this, &MainWindow::applyTextEmphasis);
    ui->ChangeTextTheme->setCurrentIndex(settings.value(preferences::textEmphasis, 0).toInt());
}

void MainWindow::addDropShadows()
{
    const auto addShadow = [this](QWidget *widget, qreal blurRadius, int alpha) {
        auto *shadow = new DropShadow(widget, this);
        shadow->setBlurRadius(blurRadius);
        shadow->setOffset(0, 0);
        shadow->setColor(QColor(0, 0, 0, alpha));
    };
    addShadow(ui->MainMenu, 30.0, 45);
    addShadow(ui->frameNewTask, 10.0, 60);
    addShadow(ui->frameProfileSty, 10.0, 60);
}

void MainWindow::setUpTrayIcon()
{
    trayIcon = new QSystemTrayIcon(this);
    auto *trayMenu = new QMenu(this);
    trayMenu->setStyleSheet(u"QMenu { background-color: white; color: black; } "
                            "QMenu::item:selected { background-color: #357ABD; color: white; }"_s);
    auto *settingsAction = new QAction(QIcon(u":/imageres/settings.png"_s), u"Ajustes"_s, this);
    connect(settingsAction, &QAction::triggered, this, &MainWindow::openSettingsFromTray);
    auto *exitAction = new QAction(QIcon(u":/imageres/unchecked.png"_s), u"Salir"_s, this);
    connect(exitAction, &QAction::triggered, QCoreApplication::instance(), [this] { leave(); });
    trayMenu->addAction(settingsAction);
    trayMenu->addAction(exitAction);
    trayIcon->setContextMenu(trayMenu);
    connect(trayIcon, &QSystemTrayIcon::activated, this, &MainWindow::trayIconActivated);
    trayIcon->setIcon(QIcon(u":/imageres/quenoliicon.png"_s));
    trayIcon->setVisible(true);
}

void MainWindow::suppressEditMenus()
{
    auto *emptyMenu = new QMenu(this);
    closeAtOnce(emptyMenu);
    const std::initializer_list<QWidget *> fields = {ui->TaskTitle, ui->TaskDescription, ui->DateLimitTask,
        ui->TaskTitleView, ui->TaskDescriptionView, ui->DateLimitTaskView};
    for (QWidget *field : fields) {
        field->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(field, &QWidget::customContextMenuRequested, this,
            [emptyMenu] { emptyMenu->exec(QCursor::pos()); });
    }
}

void MainWindow::connectTaskDetail()
{
    connect(ui->CloseDetailTaskBtn, &QPushButton::clicked, this, &MainWindow::closeTaskDetail);
    connect(ui->DeleteTaskBtn, &QPushButton::clicked, this, &MainWindow::deleteTask);
    connect(ui->FinishTaskBtn, &QPushButton::clicked, this, &MainWindow::deleteTask);
    connect(ui->UpdateTaskBtn, &QPushButton::clicked, this, &MainWindow::updateTask);
}

void MainWindow::connectPreferences()
{
    // Qt 6.7 put checkStateChanged in its place; Qt 6.4 has only this one.
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    connect(ui->SimpleNotify, &QCheckBox::stateChanged, this, &MainWindow::handleSimpleNotifyStateChanged);
    connect(
        ui->AdvancedNotify, &QCheckBox::stateChanged, this, &MainWindow::handleAdvancedNotifyStateChanged);
    connect(ui->changeClose, &QCheckBox::stateChanged, this, &MainWindow::handleChangeCloseStateChanged);
    QT_WARNING_POP
}

void MainWindow::startReminderTimer()
{
    auto *timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, &MainWindow::checkTaskReminders);
    timer->start(std::chrono::hours(24));
}

void MainWindow::readLastActivityDate()
{
    const QSettings store = preferences::mainStore();
    const QDate today = QDate::currentDate();
    const QDate lastActivity = store.value(preferences::lastActivityDate, today).toDate();
    [[maybe_unused]] const qint64 idleDays = lastActivity.daysTo(today);
}

void MainWindow::setUpGreeting()
{
    connect(ui->DisplayMessage, &QComboBox::currentIndexChanged, this, &MainWindow::updateLabels);
    updateLabels(ui->DisplayMessage->currentIndex());
}

void MainWindow::applyBaseStyle()
{
    QFontDatabase::addApplicationFont(u":/fonts/Gantari-Regular.ttf"_s);
    // Without a face of its own, FreeType draws the emphasised weight 600 like the regular one.
    QFontDatabase::addApplicationFont(u":/fonts/Gantari-SemiBold.ttf"_s);
    sheetChanges.make(
        [this] { setStyleSheet(u"QWidget { font-family: Gantari ; background-color: white; }"_s); });
    centralWidget()->ensurePolished(); // no sheet follows
}

void MainWindow::useMexicanSpanish()
{
    QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Mexico));
    // Widgets built before keep the system's locale, and date editors the display format they got from it.
    setLocale(QLocale());
    const QString displayFormat = QLocale().dateFormat(QLocale::ShortFormat);
    for (QDateEdit *edit : {ui->DateLimitTask, ui->DateLimitTaskView, ui->DateLimitTaskView_2}) {
        edit->setDisplayFormat(displayFormat);
    }
}

void MainWindow::showFirstPage()
{
    setVisiblePage(ui->TasksPage);
    for (QPushButton *button : pageButtons()) {
        button->setCheckable(true);
    }
}

void MainWindow::connectNavigation()
{
    connect(ui->TaskViewButton, &QPushButton::clicked, this, &MainWindow::onTaskViewButtonClicked);
    connect(ui->NewTaskViewButton, &QPushButton::clicked, this, &MainWindow::onNewTaskViewButtonClicked);
    connect(ui->SettingsViewButton, &QPushButton::clicked, this, &MainWindow::onSettingsViewButtonClicked);
    connect(ui->ProfileViewButton, &QPushButton::clicked, this, &MainWindow::onProfileViewButtonClicked);
    connect(ui->PatchNoticesViewButton, &QPushButton::clicked, this,
        &MainWindow::onPatchNoticesViewButtonClicked);
}

void MainWindow::connectTaskPages()
{
    connect(ui->CleanTaskButton, &QPushButton::clicked, this, &MainWindow::cleanTaskData);
    connect(ui->CancelTaskButton, &QPushButton::clicked, this, &MainWindow::cancelTask);
    connect(ui->SaveTaskButton, &QPushButton::clicked, this, &MainWindow::saveTask);
    // Setting the model replaces the selection model, so it comes before the connection to that.
    ui->TaskListView->setModel(taskModel);
    ui->TaskListView->setItemDelegate(new TitleDelegate(ui->TaskListView));
    connect(ui->TaskListView, &QListView::doubleClicked, this, &MainWindow::showTaskDetails);
    connect(ui->TaskListView->selectionModel(), &QItemSelectionModel::currentChanged, this,
        &MainWindow::showTaskDetails);
}

void MainWindow::connectProfile()
{
    connect(ui->SetProfile, &QPushButton::clicked, this, &MainWindow::changeProfilePicture);
    connect(ui->SetProfileInfo, &QPushButton::clicked, this, &MainWindow::showEditProfile);
    connect(ui->SaveProfileInfo, &QPushButton::clicked, this, &MainWindow::saveProfileInfo);
}

void MainWindow::connectTaskChoice()
{
    connect(ui->OrderNotesBy, &QComboBox::currentIndexChanged, this, &MainWindow::orderTasks);
    connect(ui->SearchTask, &QLineEdit::textChanged, this, &MainWindow::filterTasks);
}

void MainWindow::connectUpdateBanner()
{
    connect(ui->CancelUpdate, &QPushButton::clicked, this, &MainWindow::closeUpdateMessage);
    connect(ui->StartUpdate, &QPushButton::clicked, this, &MainWindow::launchUpdater);
}

void MainWindow::startInstanceServer()
{
    // A killed copy leaves its socket file behind, on which nobody could listen.
    QLocalServer::removeServer(instanceServerName);
    localServer = new QLocalServer(this);
    connect(localServer, &QLocalServer::newConnection, this, &MainWindow::handleNewInstanceConnection);
    localServer->setSocketOptions(QLocalServer::UserAccessOption);
    localServer->listen(instanceServerName);
}

void MainWindow::widenSwitches()
{
    new WholeSwitch(ui->SimpleNotify, {ui->SubTitleDtLabelTxt_8, ui->ChangeColorThemeText_2});
    new WholeSwitch(ui->AdvancedNotify, {ui->SubTitleDtLabelTxt_9, ui->ChangeColorThemeText_3});
    new WholeSwitch(ui->NotifyUpdate, {ui->SubTitleDtLabelTxt_10, ui->ChangeColorThemeText_4});
    new WholeSwitch(ui->changeClose, {ui->SubTitleDtLabelTxt_11, ui->ChangeColorThemeText_5});
}

void MainWindow::guardInput()
{
    new DoubleClickGuard(this);
    for (QDateEdit *edit : {ui->DateLimitTask, ui->DateLimitTaskView, ui->DateLimitTaskView_2}) {
        new DateTyping(edit);
    }
    // A description is stored as plain text: colours, tables and pictures would be seen only until then.
    for (QTextEdit *edit : {ui->TaskDescription, ui->TaskDescriptionView, ui->TaskDescriptionView_2}) {
        edit->setAcceptRichText(false);
    }
}
