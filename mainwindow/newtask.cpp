#include "mainwindow/mainwindow.h"
#include "mainwindow/reports.h"
#include "mainwindow/taskfile.h"
#include "mainwindow/tasklist.h"
#include "ui_mainwindow.h"

#include <QMessageBox>

using namespace Qt::Literals::StringLiterals;

void MainWindow::saveTask()
{
    const Task task{.id = newTaskId(),
        .title = ui->TaskTitle->text(),
        .description = ui->TaskDescription->toPlainText(),
        .category = ui->CategoryTaskBox->currentText(),
        .dateLimit = dueDateToText(ui->DateLimitTask->date()),
        .urgency = ui->UrgencyTaskBox->currentText()};
    if (!confirmComplete(task)) {
        return;
    }
    QJsonArray tasks;
    if (!readTasksToAppendTo(tasks)) {
        return;
    }
    tasks.append(taskToJson(task));
    if (const std::optional<QString> error = writeTaskFile(tasks)) {
        reportInBox(reports::savingTask, *error);
        ui->TaskAdvise->setVisible(true);
        return;
    }

    showTaskRows(rowsInFileOrder(tasks));
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

bool MainWindow::readTasksToAppendTo(QJsonArray &tasks)
{
    if (!taskFileExists()) {
        const std::optional<QString> error = createTaskFile();
        if (error) {
            reportInBox(reports::creatingFile, *error);
        }
        ui->TaskAdvise->setVisible(true);
        return !error;
    }
    TaskFileContents contents = readTaskFile();
    if (contents.error) {
        reportInBox(reports::savingTask, *contents.error);
        return false;
    }
    ui->TaskAdvise->setVisible(false);
    tasks = std::move(contents.tasks);
    return true;
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
