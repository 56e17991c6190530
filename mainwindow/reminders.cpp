#include "core/reminders.h"
#include "core/reports.h"
#include "core/taskfile.h"
#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"

using namespace Qt::Literals::StringLiterals;

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
