#pragma once

#include "widgets/sheetchanges.h"

#include <QMainWindow>
#include <QMap>
#include <QModelIndex>
#include <QNetworkAccessManager>
#include <QSettings>
#include <QStringList>
#include <QSystemTrayIcon>

#include <optional>

class QJsonArray;
class QLocalServer;
class QNetworkReply;
class QPropertyAnimation;
class QPushButton;
class QStringListModel;
class Ui_MainWindow;
struct FileReport;
struct Task;
struct TaskRows;

/**
 * The program's one window, and the owner of all its state.
 *
 * Construction builds the form, restores the preferences, loads the tasks, starts the update check and makes
 * every connection; no step of it fails visibly for want of a file, a font or a preference. Closing the
 * window hides it where the user asked for that, and otherwise ends the program.
 *
 * No task is kept in memory: each operation reads the task file anew and writes it back whole.
 */
class MainWindow final : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MainWindow)
public:
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

private slots:
    // The order is the meta-object's and stays as it is; slots that nothing connects stay as well.
    void onTaskViewButtonClicked();
    void onNewTaskViewButtonClicked();
    void onSettingsViewButtonClicked();
    void onProfileViewButtonClicked();
    void onPatchNoticesViewButtonClicked();
    void loadUserInfo();
    void loadTasks();
    void loadProfilePicture();
    void saveTask();
    void showTaskDetails(QModelIndex index);
    void cancelTask();
    void cleanTaskData();
    void closeTaskDetail();
    void updateTask();
    int countSavedTasks();
    qlonglong getJsonFileSize();
    void changeProfilePicture();
    void showEditProfile();
    void orderTasks(int);
    void filterTasks(QString searchText);
    void updateLabels(int);
    void loadDisplayMessageSetting();
    void updateTaskList();
    void onTaskAdded();
    void onTaskRemoved(QString taskTitle);
    void handleSimpleNotifyStateChanged(int state);
    void handleSoundThemeIndexChanged(int);
    void exitActionTriggered();
    void handleAdvancedNotifyStateChanged(int state);
    void checkTaskReminders();
    void handleChangeCloseStateChanged(int state);
    void trayIconActivated(QSystemTrayIcon::ActivationReason reason);
    void deleteTask();
    void checkVersion();
    void showUpdateMessage();
    void closeUpdateMessage();
    void launchUpdater();
    void saveProfileInfo();
    void applyColorTheme(int);
    void applyTextEmphasis(int);
    void restoreWindow();
    void flashTaskbarIcon();
    void handleNewInstanceConnection();

protected:
    /// Stores the check boxes, then hides the window or lets it close, as `changeClose` says.
    void closeEvent(QCloseEvent *event) override;

private:
    // Steps of the construction, in their order.
    void setUpColorThemes();
    void setUpTextEmphasis();
    void parkUpdateBanner();
    void addDropShadows();
    void setUpTrayIcon();
    void suppressEditMenus();
    void connectTaskDetail();
    void connectPreferences();
    void startReminderTimer();
    void readLastActivityDate();
    void setUpGreeting();
    void applyBaseStyle();
    void useMexicanSpanish();
    void showFirstPage();
    void connectNavigation();
    void connectTaskPages();
    void connectProfile();
    void connectTaskChoice();
    void connectUpdateBanner();
    void startInstanceServer();
    void widenSwitches();
    void setUpKeyboard();
    void guardInput();
    void setUpAssistance();
    void beginAssistance();

    // Navigation and panels.
    QList<QPushButton *> pageButtons() const;
    void resetNavigation();
    void showPage(QPushButton *button, QWidget *page);
    void setVisiblePage(QWidget *page);
    void openTaskDetail();
    void openSettingsFromTray();
    void leave();

    // The keyboard: shortcuts, and where the focus goes.
    void addPageKeys();
    void addTaskKeys();
    void addListKeys();
    void explainKeys();
    void setUpFocus();
    void enterTaskDetail();
    void leaveTaskDetail();
    void stepThroughRows(int rows);
    void openRow(const QModelIndex &row);
    int rowsOfAPage() const;
    QList<QWidget *> tabStops() const;

    // Preferences and the look of the form before any of them is applied.
    void loadSettings();
    void saveSettings();
    void captureBaseStyleSheets(QWidget *root);
    void captureBaseFontWeights(QWidget *root);

    // Tasks.
    void repairMissingTaskIds();
    QString formatFileSize(qint64 bytes) const;
    void showTaskRows(const TaskRows &rows);
    std::optional<QJsonArray> tasksToChooseFrom(const FileReport &report);
    void showStatistics();
    bool confirmComplete(const Task &task);
    std::optional<QJsonArray> tasksToAppendTo();
    void resetNewTaskForm();
    bool isUsableRow(const QModelIndex &index) const;

    // Profile.
    void setProfileEditable(bool editable);
    void showProfilePicture(const QString &path);

    // Messages to the user.
    void handleVersionReply(QNetworkReply *reply);
    void showTrayMessage(const QString &title, const QString &text);
    void reportInBox(const FileReport &report, const QString &error);
    void reportInTray(const FileReport &report, const QString &error);

    Ui_MainWindow *ui = nullptr;
    QStringListModel *taskModel = nullptr;
    QStringList taskIds; // row r of taskModel shows the task taskIds[r]
    QNetworkAccessManager networkManager;
    QSystemTrayIcon *trayIcon = nullptr;
    QSettings settings;
    QSettings themeSettings;
    QMap<QWidget *, QString> baseStyleSheets; // as the form sets them; widgets without one are absent
    QMap<QWidget *, int> baseFontWeights;
    QLocalServer *localServer = nullptr;
    QPropertyAnimation *detailAnimation = nullptr; // the latest slide; dangles once that has stopped
    bool leaving = false; // "Salir" was chosen
    bool detailOpen = false; // or sliding in
    SheetChanges sheetChanges{this};
};
