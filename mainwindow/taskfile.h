#pragma once

#include <QDate>
#include <QIODevice>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <optional>

/// One task as the file keeps it: six texts. What a record lacks, or holds with another type, is empty.
struct Task
{
    QString id; ///< braced UUID in lower case
    QString title;
    QString description;
    QString category; ///< visible text, such as "Trabajo"
    QString dateLimit; ///< "dd-MM-yyyy"
    QString urgency; ///< visible text, such as "Muy baja"

    bool operator==(const Task &other) const = default;
};

/// What came of opening the task file for reading.
struct TaskFileContents
{
    QJsonArray tasks; ///< empty as well where the file is not JSON or holds no array
    std::optional<QString> error; ///< why the file could not be opened
};

/// `rmc.json` in the home directory, computed anew at each call.
QString taskFilePath();
bool taskFileExists();

/// Size in bytes; 0 when there is no file.
qint64 taskFileSize();

/// Reads the whole file. With `ReadWrite` it opens only a file that could be written too, and creates a
/// missing one.
TaskFileContents readTaskFile(QIODevice::OpenMode mode = QIODevice::ReadOnly);

/// Replaces the file's content in place. The bytes are complete before the file is truncated.
/// \return why the file could not be opened; a failing write goes unnoticed.
std::optional<QString> writeTaskFile(const QJsonArray &tasks);

/// Makes an empty file. \return why it could not be made.
std::optional<QString> createTaskFile();

/// A fresh random id.
QString newTaskId();

QString taskId(const QJsonValue &record);
QString taskTitle(const QJsonValue &record);
QString taskUrgency(const QJsonValue &record);
QString taskDateLimit(const QJsonValue &record);

Task taskFromJson(const QJsonValue &record);
QJsonObject taskToJson(const Task &task);

/// Index of the first record with this id, or -1.
qsizetype indexOfTask(const QJsonArray &tasks, const QString &id);

/// The records with an id given to each that has none, everything else untouched; nothing when all have one.
std::optional<QJsonArray> withMissingIdsRepaired(const QJsonArray &tasks);

/// Due date of a record, invalid unless the text is exactly "dd-MM-yyyy".
QDate dueDateFromText(const QString &text);
QString dueDateToText(QDate date);

/// Two decimals, a point and a unit from "B" to "TB" in steps of 1024. The unit is chosen before rounding, so
/// that 1048575 bytes are "1024.00 KB".
QString fileSizeText(qint64 bytes);
