#include "core/tasklist.h"
#include "core/reports.h"
#include "core/taskfile.h"
#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"

#include <QStringListModel>

void MainWindow::showTaskRows(const TaskRows &rows)
{
    taskIds = rows.ids;
    taskModel->setStringList(rows.titles);
}

void MainWindow::loadTasks()
{
    if (!taskFileExists()) {
        ui->TaskAdvise->setVisible(true);
        return;
    }
    const TaskFileContents contents = readTaskFile();
    if (contents.error) {
        reportInBox(reports::loadingTasks, *contents.error);
        ui->TaskAdvise->setVisible(true);
        return;
    }
    showTaskRows(rowsInFileOrder(contents.tasks));
    ui->TaskAdvise->setVisible(false);
}

std::optional<QJsonArray> MainWindow::tasksToChooseFrom(const FileReport &report)
{
    if (!taskFileExists()) {
        taskModel->setStringList({});
        return std::nullopt;
    }
    const TaskFileContents contents = readTaskFile();
    if (contents.error) {
        reportInBox(report, *contents.error);
        return std::nullopt;
    }
    return contents.tasks;
}

void MainWindow::orderTasks(int index)
{
    if (const auto tasks = tasksToChooseFrom(reports::orderingTasks)) {
        showTaskRows(rowsInOrder(*tasks, static_cast<TaskOrder>(index)));
    }
}

void MainWindow::filterTasks(QString searchText)
{
    if (const auto tasks = tasksToChooseFrom(reports::searchingTasks)) {
        showTaskRows(rowsMatching(*tasks, searchText));
    }
}
