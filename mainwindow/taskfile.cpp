#include "mainwindow/taskfile.h"

#include "mainwindow/mainwindow.h"
#include "mainwindow/reports.h"
#include "ui_mainwindow.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QStringListModel>
#include <QUuid>

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QLatin1StringView idKey{"id"};
constexpr QLatin1StringView titleKey{"title"};
constexpr QLatin1StringView descriptionKey{"description"};
constexpr QLatin1StringView categoryKey{"category"};
constexpr QLatin1StringView dateLimitKey{"dateLimit"};
constexpr QLatin1StringView urgencyKey{"urgency"};

constexpr QStringView dueDateFormat = u"dd-MM-yyyy";

QString text(const QJsonValue &record, QLatin1StringView key)
{
    return record.toObject().value(key).toString();
}

} // namespace

QString taskFilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::HomeLocation) + "/rmc.json"_L1;
}

bool taskFileExists()
{
    return QFileInfo::exists(taskFilePath());
}

qint64 taskFileSize()
{
    const QFileInfo file(taskFilePath());
    return file.exists() ? file.size() : 0;
}

TaskFileContents readTaskFile(QIODevice::OpenMode mode)
{
    QFile file(taskFilePath());
    if (!file.open(mode)) {
        return {.tasks = {}, .error = file.errorString()};
    }
    return {.tasks = QJsonDocument::fromJson(file.readAll()).array(), .error = std::nullopt};
}

std::optional<QString> writeTaskFile(const QJsonArray &tasks)
{
    const QByteArray bytes = QJsonDocument(tasks).toJson(QJsonDocument::Indented);
    QFile file(taskFilePath());
    if (!file.open(QIODevice::WriteOnly)) {
        return file.errorString();
    }
    file.write(bytes);
    return std::nullopt;
}

std::optional<QString> createTaskFile()
{
    QFile file(taskFilePath());
    if (!file.open(QIODevice::WriteOnly)) {
        return file.errorString();
    }
    return std::nullopt;
}

QString newTaskId()
{
    return QUuid::createUuid().toString(QUuid::WithBraces);
}

QString taskId(const QJsonValue &record)
{
    return text(record, idKey);
}

QString taskTitle(const QJsonValue &record)
{
    return text(record, titleKey);
}

QString taskUrgency(const QJsonValue &record)
{
    return text(record, urgencyKey);
}

QString taskDateLimit(const QJsonValue &record)
{
    return text(record, dateLimitKey);
}

Task taskFromJson(const QJsonValue &record)
{
    return {.id = text(record, idKey),
        .title = text(record, titleKey),
        .description = text(record, descriptionKey),
        .category = text(record, categoryKey),
        .dateLimit = text(record, dateLimitKey),
        .urgency = text(record, urgencyKey)};
}

QJsonObject taskToJson(const Task &task)
{
    return {{idKey, task.id}, {titleKey, task.title}, {descriptionKey, task.description},
        {categoryKey, task.category}, {dateLimitKey, task.dateLimit}, {urgencyKey, task.urgency}};
}

qsizetype indexOfTask(const QJsonArray &tasks, const QString &id)
{
    for (qsizetype i = 0; i < tasks.size(); ++i) {
        if (taskId(tasks.at(i)) == id) {
            return i;
        }
    }
    return -1;
}

std::optional<QJsonArray> withMissingIdsRepaired(const QJsonArray &tasks)
{
    std::optional<QJsonArray> repaired;
    for (qsizetype i = 0; i < tasks.size(); ++i) {
        if (!taskId(tasks.at(i)).isEmpty()) {
            continue;
        }
        if (!repaired) {
            repaired = tasks;
        }
        QJsonObject record = tasks.at(i).toObject();
        record.insert(idKey, newTaskId());
        repaired->replace(i, record);
    }
    return repaired;
}

QDate dueDateFromText(const QString &text)
{
    return QDate::fromString(text, dueDateFormat);
}

QString dueDateToText(QDate date)
{
    return date.toString(dueDateFormat);
}

QString fileSizeText(qint64 bytes)
{
    constexpr std::array units = {"B"_L1, "KB"_L1, "MB"_L1, "GB"_L1, "TB"_L1};
    constexpr double step = 1024.0;
    auto value = static_cast<double>(bytes);
    std::size_t unit = 0;
    while (value >= step && unit + 1 < units.size()) {
        value /= step;
        ++unit;
    }
    return QString::number(value, 'f', 2) + u' ' + units.at(unit);
}

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
