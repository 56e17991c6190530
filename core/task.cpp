#include "core/task.h"

#include <QUuid>

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
