// Performs one operation on the task file, in the home folder and session of the environment, and prints as
// lines of JSON what the user and the log are told, each at the moment it is told, and at the end what the
// window shows.

#include "support/isolation.h"
#include "support/silentnetwork.h"
#include "support/taskform.h"
#include "support/window.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>

#include <iostream>

using namespace Qt::Literals::StringLiterals;

// Defined by the library that counts the calls, where that is loaded.
extern "C" __attribute__((weak)) void faultyFileBegin();

namespace {

void print(const QJsonValue &line)
{
    const QByteArray bytes = QJsonDocument(QJsonArray{line}).toJson(QJsonDocument::Compact) + '\n';
    std::cout << bytes.constData() << std::flush;
}

void printLogLine(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtCriticalMsg || (type == QtInfoMsg && qstrcmp(context.category, "default") == 0)) {
        print(QJsonArray{type == QtCriticalMsg ? u"critical line"_s : u"info line"_s, text});
    }
}

// Says yes to a question, and OK to everything else.
void answerOpenBox()
{
    auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    if (!box || !box->isVisible()) {
        return;
    }
    QAbstractButton *yes = box->button(QMessageBox::Yes);
    const QString kind = yes                   ? u"question"_s
        : box->icon() == QMessageBox::Critical ? u"critical box"_s
                                               : u"warning box"_s;
    print(QJsonArray{kind, box->windowTitle(), box->text()});
    (yes ? yes : box->button(QMessageBox::Ok))->click();
}

void printState(const MainWindow &window)
{
    print(QJsonObject{{u"rows"_s, QJsonArray::fromStringList(shownTitles(window))},
        {u"advice"_s, !advice(window)->isHidden()},
        {u"count"_s, widget<QLabel>(window, "SavedTasks")->text()},
        {u"size"_s, widget<QLabel>(window, "StorageFile")->text()},
        {u"selection"_s, taskList(window)->selectionModel()->hasSelection()},
        {u"form"_s, QJsonArray::fromStringList(formTexts(window).mid(0, 2))},
        {u"panel"_s, widget<QLineEdit>(window, "TaskTitleView")->text()},
        {u"page"_s, widget(window, "NewTasksPage")->isHidden() ? u"tasks"_s : u"new task"_s}});
}

void begin()
{
    if (faultyFileBegin) {
        faultyFileBegin();
    }
}

void selectFirstRow(const MainWindow &window)
{
    selectRow(window, 0);
}

void fillNewTask(const MainWindow &window)
{
    click(window, "NewTaskViewButton");
    fillForm(window);
}

void changePanel(const MainWindow &window)
{
    selectRow(window, 0);
    widget<QLineEdit>(window, "TaskTitleView")->setText(u"Regar el jardín"_s);
}

// False when there is no operation of this name.
bool perform(MainWindow &window, const QByteArray &name)
{
    if (name == "load") {
        begin();
        callSlot(window, "loadTasks");
    } else if (name == "order") {
        begin();
        widget<QComboBox>(window, "OrderNotesBy")->setCurrentIndex(1);
    } else if (name == "search") {
        begin();
        widget<QLineEdit>(window, "SearchTask")->setText(u"a"_s);
    } else if (name == "details") {
        begin();
        selectFirstRow(window);
    } else if (name == "save") {
        fillNewTask(window);
        begin();
        click(window, "SaveTaskButton");
    } else if (name == "update") {
        changePanel(window);
        begin();
        click(window, "UpdateTaskBtn");
    } else if (name == "delete") {
        selectFirstRow(window);
        begin();
        click(window, "DeleteTaskBtn");
    } else if (name == "reminders") {
        widget<QCheckBox>(window, "AdvancedNotify")->setChecked(true);
        begin();
        callSlot(window, "checkTaskReminders");
    } else if (name == "statistics") {
        begin();
        callSlot(window, "updateTaskList");
    } else {
        return name == "start";
    }
    return true;
}

} // namespace

// The program's own definition wins over that of Qt's library when this one is linked.
void QSystemTrayIcon::showMessage(
    const QString &title, const QString &msg, QSystemTrayIcon::MessageIcon icon, int msecs)
{
    const bool asEver = icon == QSystemTrayIcon::Information && msecs == 10000;
    print(QJsonArray{asEver ? u"tray"_s : u"tray with another icon or time"_s, title, msg});
}

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const SilentNetwork network;
    qInstallMessageHandler(printLogLine);
    QTimer boxes;
    QObject::connect(&boxes, &QTimer::timeout, &application, answerOpenBox);
    boxes.start(1);
    if (argc == 2 && qstrcmp(argv[1], "start") == 0) {
        begin();
    }
    MainWindow window;
    if (argc != 2 || !perform(window, argv[1])) {
        std::cerr << "Which operation?\n";
        return 2;
    }
    printState(window);
    return 0;
}
