#pragma once

#include <QJsonArray>
#include <QString>
#include <QStringList>

/// What the list shows, row by row, and which task each row stands for; both lists have the same length.
struct TaskRows
{
    QStringList titles;
    QStringList ids;

    bool operator==(const TaskRows &other) const = default;
};

/// The orders a user can choose, by their index in the chooser. Every other index shows file order.
enum class TaskOrder { File = 0, Title = 1, Urgency = 2 };

/// 1 for "Urgente" to 5 for "Muy baja"; 0, and so first of all, for a text that is none of the five.
int urgencyRank(const QString &urgency);

TaskRows rowsInFileOrder(const QJsonArray &tasks);

/// By title in order of UTF-16 code units, by urgency rank, or in file order. Equal keys come in no
/// particular order.
TaskRows rowsInOrder(const QJsonArray &tasks, TaskOrder order);

/// The tasks whose title contains `searchText` in any letter case, in file order. An empty text matches all.
TaskRows rowsMatching(const QJsonArray &tasks, const QString &searchText);
