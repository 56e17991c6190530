#include "mainwindow/reminders.h"

#include "mainwindow/mainwindow.h"
#include "mainwindow/reports.h"
#include "mainwindow/taskfile.h"
#include "ui_mainwindow.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int daysAhead = 2;

} // namespace

QStringList titlesDue(const QJsonArray &tasks, const QDateTime &now)
{
    const QDateTime limit = now.addDays(daysAhead);
    QStringList titles;
    for (const auto &record : tasks) {
        // Where clocks jump at midnight, 00:00 does not exist and the day starts later.
        const QDateTime deadline = dueDateFromText(taskDateLimit(record)).startOfDay();
        if (deadline.isValid() && deadline >= now && deadline <= limit) {
            titles.append(taskTitle(record));
        }
    }
    return titles;
}

void MainWindow::checkTaskReminders()
{
    if (!ui->AdvancedNotify->isChecked()) {
        return;
    }
    const TaskFileContents contents = readTaskFile();
    if (contents.error) {
        logFileError(reports::readingTask.log, *contents.error);
        return;
    }
    const QStringList titles = titlesDue(contents.tasks, QDateTime::currentDateTime());
    if (!titles.isEmpty()) {
        showTrayMessage(u"Tareas por vencer"_s,
            u"Hay %1 tarea(s) por vencer dentro de 2 días:\n"_s.arg(titles.size()) + titles.join(", "_L1));
    }
}
