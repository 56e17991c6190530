#include "core/reports.h"
#include "core/task.h"
#include "core/taskfile.h"
#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"
#include "widgets/questionbox.h"

#include <QMessageBox>

using namespace Qt::Literals::StringLiterals;

namespace {

bool userConfirmsRemoval()
{
    QMessageBox box;
    box.setIconPixmap(QPixmap(u":/imageres/help.png"_s));
    box.setWindowTitle(u"Finalizar Tarea"_s);
    box.setText(u"¿Está seguro de que desea finalizar y eliminar esta tarea?"_s);
    box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    box.setStyleSheet(u"QPushButton {  border-radius: 5px;  border: 1px solid black;  padding: 5px 10px;}"
                      "QPushButton:hover {  background-color: #d3d3d3;}"_s);
    box.setWindowIcon(QIcon(u":/imageres/quenoliicon.ico"_s)); // a box without a parent inherits none
    preferNo(box);
    return box.exec() == QMessageBox::Yes;
}

} // namespace

bool MainWindow::isUsableRow(const QModelIndex &index) const
{
    return index.isValid() && index.row() < taskIds.size();
}

void MainWindow::showTaskDetails(QModelIndex index)
{
    if (!isUsableRow(index)) {
        return;
    }
    const TaskFileContents contents = readTaskFile();
    if (contents.error) {
        reportInBox(reports::readingTask, *contents.error);
        ui->TaskAdvise->setVisible(true);
        return;
    }
    const qsizetype position = indexOfTask(contents.tasks, taskIds.at(index.row()));
    const QJsonObject record = position < 0 ? QJsonObject() : contents.tasks.at(position).toObject();
    if (record.isEmpty()) {
        QMessageBox::warning(this, u"Error"_s, u"Task details not found."_s);
        return;
    }
    // Texts and dates that a field cannot show leave it as it is.
    const Task task = taskFromJson(record);
    ui->TaskTitleView->setText(task.title);
    ui->TaskDescriptionView->setPlainText(task.description);
    ui->CategoryTaskBoxView->setCurrentText(task.category);
    ui->DateLimitTaskView->setDate(dueDateFromText(task.dateLimit));
    ui->UrgencyTaskBoxView->setCurrentText(task.urgency);
    openTaskDetail();
}

void MainWindow::updateTask()
{
    const QModelIndex index = ui->TaskListView->currentIndex();
    if (!isUsableRow(index)) {
        showTrayMessage(u"Advertencia"_s, u"Por favor, seleccione una tarea para actualizar."_s);
        return;
    }
    TaskFileContents contents = readTaskFile(QIODevice::ReadWrite);
    if (contents.error) {
        reportInTray(reports::updatingTask, *contents.error);
        return;
    }
    const Task task{.id = taskIds.at(index.row()),
        .title = ui->TaskTitleView->text(),
        .description = ui->TaskDescriptionView->toPlainText(),
        .category = ui->CategoryTaskBoxView->currentText(),
        .dateLimit = dueDateToText(ui->DateLimitTaskView->date()),
        .urgency = ui->UrgencyTaskBoxView->currentText()};
    // A task that has vanished from the file is not put back, and still counts as updated.
    if (const qsizetype position = indexOfTask(contents.tasks, task.id); position >= 0) {
        contents.tasks.replace(position, taskToJson(task));
    }
    if (const std::optional<QString> error = writeTaskFile(contents.tasks)) {
        reportInTray(reports::writingTask, *error);
        return;
    }
    closeTaskDetail();
    showTrayMessage(u"Tarea actualizada"_s, u"La tarea '%1' ha sido actualizada."_s.arg(task.title));
    updateTaskList();
}

void MainWindow::deleteTask()
{
    if (!userConfirmsRemoval()) {
        return;
    }
    closeTaskDetail();
    const QModelIndex index = ui->TaskListView->currentIndex();
    if (!isUsableRow(index)) {
        QMessageBox::warning(this, u"Advertencia"_s, u"Por favor, seleccione una tarea para eliminar."_s);
        return;
    }
    TaskFileContents contents = readTaskFile(QIODevice::ReadWrite);
    if (contents.error) {
        reportInBox(reports::readingTask, *contents.error);
        return;
    }
    QJsonValue removed;
    if (const qsizetype position = indexOfTask(contents.tasks, taskIds.at(index.row())); position >= 0) {
        removed = contents.tasks.takeAt(position);
    }
    if (const std::optional<QString> error = writeTaskFile(contents.tasks)) {
        reportInBox(reports::writingTask, *error);
        return;
    }
    onTaskRemoved(taskTitle(removed));
}

void MainWindow::onTaskRemoved(QString taskTitle)
{
    if (ui->SimpleNotify->isChecked()) {
        showTrayMessage(u"Tarea eliminada"_s, u"La tarea '%1' ha sido eliminada."_s.arg(taskTitle));
    }
    updateTaskList();
    showStatistics();
}
