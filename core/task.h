#pragma once

#include <QDate>
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
