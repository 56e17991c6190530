#include "core/taskfile.h"
#include "core/reports.h"
#include "core/task.h"
#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"

#include <QDebug>
#include <QStringListModel>

using namespace Qt::Literals::StringLiterals;

void MainWindow::repairMissingTaskIds()
{
    if (!taskFileExists()) {
        return;
    }
    const TaskFileContents contents = readTaskFile();
    if (contents.error) {
        logFileError("No se pudo abrir rmc.json para reparar ids:", *contents.error);
        return;
    }
    const std::optional<QJsonArray> repaired = withMissingIdsRepaired(contents.tasks);
    if (!repaired) {
        return;
    }
    if (const std::optional<QString> error = writeTaskFile(*repaired)) {
        logFileError("No se pudo abrir rmc.json para guardar los ids reparados:", *error);
        return;
    }
    qInfo() << "rmc.json: se repararon"
            << "ids faltantes en tareas antiguas.";
}

int MainWindow::countSavedTasks()
{
    return static_cast<int>(readTaskFile().tasks.size());
}

qlonglong MainWindow::getJsonFileSize()
{
    return taskFileSize();
}

QString MainWindow::formatFileSize(qint64 bytes) const
{
    return fileSizeText(bytes);
}

void MainWindow::showStatistics()
{
    ui->SavedTasks->setText("Tareas guardadas: "_L1 + QString::number(countSavedTasks()));
    ui->StorageFile->setText(u"Tamaño de almacenamiento ocupado: "_s + formatFileSize(getJsonFileSize()));
}

void MainWindow::updateTaskList()
{
    loadTasks();
    ui->TaskListView->setModel(taskModel);
    showStatistics();
}
