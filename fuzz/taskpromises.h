#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QList>
#include <QString>

struct TaskRows;

/// What a row of the list stands for, read here without any of the program's own code.
struct ListedTask
{
    QString title;
    QString id;

    bool operator==(const ListedTask &other) const = default;
};

QList<ListedTask> listed(const QJsonArray &tasks);
QList<ListedTask> listed(const TaskRows &rows);

/// The records that the bytes hold by Qt's own parser; none where they are not JSON or no array.
QJsonArray recordsIn(const QByteArray &bytes);

/// A text of a record; empty when it lacks the key or holds another type under it.
QString textOf(const QJsonValue &record, const QString &key);

/// The text as a file can hold it: half a surrogate pair has no UTF-8.
QString storable(const QString &text);

/// Whether two records tell the same once both have been through a file.
bool sameStored(const QJsonValue &one, const QJsonValue &other);

bool isPermutation(QList<ListedTask> some, QList<ListedTask> others);
bool isInTitleOrder(const QList<ListedTask> &rows);

/// Searches that find something, and some that most often do not.
QStringList searchesFor(const QJsonArray &tasks);

/// What the free functions promise about these records.
void checkRepair(const QJsonArray &tasks);
void checkLists(const QJsonArray &tasks);
void checkReminders(const QJsonArray &tasks);

/// Tells libFuzzer what is in the bytes.
void markTasks(const QByteArray &bytes);
