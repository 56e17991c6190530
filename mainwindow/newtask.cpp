#include "core/reports.h"
#include "core/task.h"
#include "core/taskfile.h"
#include "core/tasklist.h"
#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"

#include <QMessageBox>

using namespace Qt::Literals::StringLiterals;

void MainWindow::saveTask()
{
    Task task{.id = QString(),
        .title = ui->TaskTitle->text(),
        .description = ui->TaskDescription->toPlainText(),
        .category = ui->CategoryTaskBox->currentText(),
        .dateLimit = dueDateToText(ui->DateLimitTask->date()),
        .urgency = ui->UrgencyTaskBox->currentText()};
    if (!confirmComplete(task)) {
        return;
    }
    task.id = newTaskId();
    std::optional<QJsonArray> tasks = tasksToAppendTo();
    if (!tasks) {
        return;
    }
    tasks->append(taskToJson(task));
    if (const std::optional<QString> error = writeTaskFile(*tasks)) {
        reportInBox(reports::savingTask, *error);
        ui->TaskAdvise->setVisible(true);
        return;
    }

    showTaskRows(rowsInFileOrder(*tasks));
    resetNewTaskForm();
    ui->TaskAdvise->setVisible(false);
    onTaskAdded();
    showStatistics();
    // Not the navigation slot: that would slide the detail panel and clear the selection.
    ui->TaskViewButton->setChecked(true);
    ui->NewTaskViewButton->setChecked(false);
    ui->TasksPage->setVisible(true);
    ui->NewTasksPage->setVisible(false);
    ui->ProfilePage->setVisible(false);
}

bool MainWindow::confirmComplete(const Task &task)
{
    if (task.title.isEmpty() || task.description.isEmpty() || task.category.isEmpty()
        || task.urgency.isEmpty()) {
        QMessageBox::warning(this, u"Datos incompletos"_s, u"Por favor, llene todos los campos requeridos"_s);
        return false;
    }
    if (ui->CategoryTaskBox->currentIndex() == -1 || ui->UrgencyTaskBox->currentIndex() == -1) {
        QMessageBox::warning(
            this, u"Selección incompleta"_s, u"Por favor, seleccione una categoría y una urgencia válida"_s);
        return false;
    }
    return true;
}

std::optional<QJsonArray> MainWindow::tasksToAppendTo()
{
    if (!taskFileExists()) {
        const std::optional<QString> error = createTaskFile();
        if (error) {
            reportInBox(reports::creatingFile, *error);
        }
        ui->TaskAdvise->setVisible(true);
        return error ? std::nullopt : std::optional<QJsonArray>(std::in_place);
    }
    const TaskFileContents contents = readTaskFile();
    if (contents.error) {
        reportInBox(reports::savingTask, *contents.error);
        return std::nullopt;
    }
    ui->TaskAdvise->setVisible(false);
    return contents.tasks;
}

void MainWindow::resetNewTaskForm()
{
    ui->TaskTitle->clear();
    ui->TaskDescription->clear();
    ui->CategoryTaskBox->setCurrentIndex(-1);
    ui->DateLimitTask->setDate(QDate::currentDate());
    ui->UrgencyTaskBox->setCurrentIndex(-1);
}

void MainWindow::cleanTaskData()
{
    resetNewTaskForm();
}

void MainWindow::cancelTask()
{
    onTaskViewButtonClicked();
    resetNewTaskForm();
}
