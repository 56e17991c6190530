#include "boxes.h"
#include "core/reminders.h"
#include "core/task.h"
#include "core/taskfile.h"
#include "session.h"
#include "support/home.h"
#include "support/traymessages.h"
#include "support/window.h"
#include "taskpromises.h"
#include "windowaccess.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QTextEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int detailedRows = 6;

QList<ListedTask> shownRows(MainWindow &window)
{
    const QStringList titles = shownTitles(window);
    const QStringList ids = window.*reach(TaskIds());
    expect(titles.size() == ids.size(), "each row of the list has a title and an id");
    QList<ListedTask> rows;
    for (qsizetype row = 0; row < ids.size(); ++row) {
        rows.append({titles.at(row), ids.at(row)});
    }
    return rows;
}

/// What can be no array reads as no tasks, and what can be one reads as Qt's parser has it.
void checkReading(const QByteArray &bytes)
{
    const TaskFileContents contents = readTaskFile();
    expect(!contents.error, "a file that can be opened is read");
    expect(contents.tasks == recordsIn(bytes), "the file's array is read, and no tasks where it has none");
    const QByteArray trimmed = bytes.startsWith("\xef\xbb\xbf") ? bytes.mid(3).trimmed() : bytes.trimmed();
    expect(contents.tasks.isEmpty() || (trimmed.startsWith('[') && trimmed.endsWith(']')),
        "what is no array reads as no tasks");
}

/// Writes what the bytes hold and reads it back; leaves the bytes as they were.
void checkWriting(const QByteArray &bytes)
{
    const QJsonArray tasks = recordsIn(bytes);
    expect(!writeTaskFile(tasks), "a file that can be opened is written");
    const QJsonArray again = readTaskFile().tasks;
    expect(again.size() == tasks.size(), "each task that is written is read again");
    for (qsizetype i = 0; i < tasks.size(); ++i) {
        expect(sameStored(tasks.at(i), again.at(i)), "a task that is written is read again as it was");
    }
    home::writeBytes(bytes);
}

/// \return the records that the file holds from here on
QJsonArray checkRepairOfFile(MainWindow &window, const QByteArray &bytes)
{
    const QJsonArray before = recordsIn(bytes);
    (window.*reach(RepairMissingTaskIds()))();
    const QByteArray repairedBytes = home::bytes();
    const QJsonArray after = recordsIn(repairedBytes);
    expect(after.size() == before.size(), "the repair of a file keeps the number of tasks");
    bool missing = false;
    for (qsizetype i = 0; i < after.size(); ++i) {
        const bool given = textOf(before.at(i), u"id"_s).isEmpty();
        missing = missing || given;
        expect(!textOf(after.at(i), u"id"_s).isEmpty(), "after the repair each record has an id");
        expect(given || sameStored(before.at(i), after.at(i)), "the repair of a file keeps what has an id");
        expect(!given || sameStored(textOf(before.at(i), u"title"_s), textOf(after.at(i), u"title"_s)),
            "the repair of a file keeps titles");
    }
    expect(missing || repairedBytes == bytes, "a file that needs no repair keeps its bytes");
    (window.*reach(RepairMissingTaskIds()))();
    expect(home::bytes() == repairedBytes, "a repaired file keeps its bytes");
    return after;
}

void checkStatistics(MainWindow &window, qsizetype count)
{
    int counted = -1;
    qlonglong size = -1;
    QMetaObject::invokeMethod(&window, "countSavedTasks", Qt::DirectConnection, Q_RETURN_ARG(int, counted));
    QMetaObject::invokeMethod(
        &window, "getJsonFileSize", Qt::DirectConnection, Q_RETURN_ARG(qlonglong, size));
    expect(counted == count, "the count is that of the file's records");
    expect(size == home::bytes().size(), "the size is that of the file");
    callSlot(window, "updateTaskList");
    expect(widget<QLabel>(window, "SavedTasks")->text() == u"Tareas guardadas: %1"_s.arg(count),
        "the count is shown");
    expect(widget<QLabel>(window, "StorageFile")->text().startsWith(u"Tamaño de almacenamiento ocupado: "_s),
        "the size is shown");
}

void checkListInWindow(MainWindow &window, const QJsonArray &tasks)
{
    callSlot(window, "loadTasks");
    expect(shownRows(window) == listed(tasks), "the window lists the file");
    expect(advice(window)->isHidden(), "no advice while there is a file");
    taskList(window)->doItemsLayout();
    for (int order = -1; order <= 3; ++order) {
        callSlot(window, "orderTasks", order);
        const QList<ListedTask> rows = shownRows(window);
        expect(isPermutation(rows, listed(tasks)), "each order of the window shows each task once");
        expect(order != 1 || isInTitleOrder(rows), "the window orders by title");
    }
    for (const QString &search : searchesFor(tasks)) {
        callSlot(window, "filterTasks", search);
        const QList<ListedTask> rows = shownRows(window);
        expect(!search.isEmpty() || rows == listed(tasks), "an empty search shows every task");
        for (const ListedTask &row : rows) {
            expect(row.title.contains(search, Qt::CaseInsensitive), "the window shows what a search finds");
        }
    }
}

/// What the panel holds, as the record that an update writes.
QJsonObject recordInPanel(MainWindow &window, const QString &id)
{
    return {{u"id"_s, id}, {u"title"_s, widget<QLineEdit>(window, "TaskTitleView")->text()},
        {u"description"_s, widget<QTextEdit>(window, "TaskDescriptionView")->toPlainText()},
        {u"category"_s, widget<QComboBox>(window, "CategoryTaskBoxView")->currentText()},
        {u"dateLimit"_s, widget<QDateEdit>(window, "DateLimitTaskView")->date().toString(u"dd-MM-yyyy"_s)},
        {u"urgency"_s, widget<QComboBox>(window, "UrgencyTaskBoxView")->currentText()}};
}

/// The panel's choice: the text where the box has it, and otherwise what was chosen before.
QString chosen(MainWindow &window, const char *box, const QJsonValue &text, const QJsonValue &before)
{
    return widget<QComboBox>(window, box)->findText(text.toString()) < 0 ? before.toString()
                                                                         : text.toString();
}

void checkDetails(MainWindow &window, const QJsonArray &tasks, int row)
{
    const QString id = (window.*reach(TaskIds())).at(row);
    const QJsonObject before = recordInPanel(window, id);
    callSlot(window, "showTaskDetails", taskList(window)->model()->index(row, 0));
    const QJsonObject shown = recordInPanel(window, id);
    const QJsonValue record = tasks.at(indexOfTask(tasks, id));

    const int longest = widget<QLineEdit>(window, "TaskTitleView")->maxLength();
    expect(shown[u"title"] == textOf(record, u"title"_s).left(longest), "the panel shows the title");
    expect(shown[u"category"]
            == chosen(window, "CategoryTaskBoxView", textOf(record, u"category"_s), before[u"category"]),
        "the panel shows the category that it knows");
    expect(shown[u"urgency"]
            == chosen(window, "UrgencyTaskBoxView", textOf(record, u"urgency"_s), before[u"urgency"]),
        "the panel shows the urgency that it knows");
    const auto *edit = widget<QDateEdit>(window, "DateLimitTaskView");
    const QDate date = QDate::fromString(textOf(record, u"dateLimit"_s), u"dd-MM-yyyy"_s);
    expect(!date.isValid() || edit->date() == qBound(edit->minimumDate(), date, edit->maximumDate()),
        "the panel shows the due date");
    expect(date.isValid() || shown[u"dateLimit"] == before[u"dateLimit"],
        "the panel keeps its date where there is none");
}

void expectOnlyMessage(const QString &title)
{
    const QList<TrayMessage> messages = traymessages::all();
    expect(messages.size() == 1 && messages.constFirst().title == title, "the tray tells what was done");
    traymessages::clear();
}

/// \return the records that the file holds from here on
QJsonArray checkUpdate(MainWindow &window, const QJsonArray &tasks, int row)
{
    callSlot(window, "loadTasks");
    const QByteArray bytes = home::bytes();
    callSlot(window, "updateTask");
    expect(home::bytes() == bytes, "without a row nothing is written");
    expectOnlyMessage(u"Advertencia"_s);

    selectRow(window, row);
    const QString id = (window.*reach(TaskIds())).at(row);
    const QJsonObject written = recordInPanel(window, id);
    callSlot(window, "updateTask");
    expectOnlyMessage(u"Tarea actualizada"_s);
    const QJsonArray updated = recordsIn(home::bytes());
    const qsizetype position = indexOfTask(tasks, id);
    expect(updated.size() == tasks.size(), "an update keeps the number of tasks");
    for (qsizetype i = 0; i < tasks.size(); ++i) {
        expect(sameStored(updated.at(i), i == position ? QJsonValue(written) : tasks.at(i)),
            "an update writes the panel over its task and keeps the others");
    }
    expect(shownRows(window) == listed(updated), "the list is loaded anew after an update");
    return updated;
}

void checkDeletion(MainWindow &window, QJsonArray tasks, int row)
{
    selectRow(window, row);
    tasks.removeAt(indexOfTask(tasks, (window.*reach(TaskIds())).at(row)));
    callSlot(window, "deleteTask");
    expect(boxes::shown() == 1, "a deletion asks once and reports nothing");
    expectOnlyMessage(u"Tarea eliminada"_s);
    const QJsonArray left = recordsIn(home::bytes());
    expect(left.size() == tasks.size(), "a deletion takes one task");
    for (qsizetype i = 0; i < left.size(); ++i) {
        expect(sameStored(left.at(i), tasks.at(i)), "a deletion keeps the others");
    }
    expect(shownRows(window) == listed(left), "the list is loaded anew after a deletion");
}

void checkReminderInWindow(MainWindow &window, const QJsonArray &tasks)
{
    widget<QCheckBox>(window, "AdvancedNotify")->setChecked(true);
    const auto messageFor = [&tasks](const QDateTime &now) {
        const QStringList titles = titlesDue(tasks, now);
        return titles.isEmpty()
            ? QString()
            : u"Hay %1 tarea(s) por vencer dentro de 2 días:\n"_s.arg(titles.size()) + titles.join(u", "_s);
    };
    const QString earlier = messageFor(QDateTime::currentDateTime());
    callSlot(window, "checkTaskReminders");
    const QString later = messageFor(QDateTime::currentDateTime());
    const QList<TrayMessage> messages = traymessages::all();
    const QString told = messages.isEmpty() ? QString() : messages.constFirst().text;
    expect(messages.size() <= 1 && (told == earlier || told == later), "the tray reminds of what is due");
    traymessages::clear();
}

void checkWindow(const QByteArray &bytes)
{
    MainWindow &window = theWindow();
    const QJsonArray tasks = checkRepairOfFile(window, bytes);
    checkListInWindow(window, tasks);
    checkStatistics(window, tasks.size());
    checkReminderInWindow(window, tasks);
    const int rows = static_cast<int>(tasks.size());
    for (int row = 0; row < std::min(rows, detailedRows); ++row) {
        checkDetails(window, tasks, row);
    }
    expect(boxes::shown() == 0, "nothing of this needs a box");
    if (rows > 0) {
        const int row = static_cast<int>(bytes.size()) % rows;
        checkDeletion(window, checkUpdate(window, tasks, row), row);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    theWindow();
    forbidWarnings();
    boxes::clear();
    traymessages::clear();
    markTasks(bytes);
    home::writeBytes(bytes);

    const QJsonArray tasks = recordsIn(bytes);
    checkReading(bytes);
    checkWriting(bytes);
    checkRepair(tasks);
    checkLists(tasks);
    checkReminders(tasks);
    checkWindow(bytes);
    settle();
    return 0;
}
