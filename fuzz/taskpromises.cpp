#include "taskpromises.h"

#include "codeunits.h"
#include "core/reminders.h"
#include "core/task.h"
#include "core/tasklist.h"
#include "session.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace {

int rankOf(const QJsonValue &record)
{
    const QStringList ranked = {u"Urgente"_s, u"Alta"_s, u"Media"_s, u"Baja"_s, u"Muy baja"_s};
    return static_cast<int>(ranked.indexOf(textOf(record, u"urgency"_s))) + 1;
}

QJsonObject withoutId(const QJsonValue &record)
{
    QJsonObject object = record.toObject();
    object.remove(u"id"_s);
    return object;
}

void checkRepairedRecord(const QJsonValue &before, const QJsonValue &after)
{
    static const QRegularExpression uuid(
        u"\\A\\{[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}\\}\\z"_s);
    if (!textOf(before, u"id"_s).isEmpty()) {
        expect(before == after, "the repair leaves a record with an id alone");
        return;
    }
    expect(uuid.match(textOf(after, u"id"_s)).hasMatch(), "the repair gives a missing id");
    expect(withoutId(before) == withoutId(after), "the repair touches nothing but the id");
}

/// By number rather than by Qt's parser of dates; invalid unless the text is exactly "dd-MM-yyyy".
QDate dateIn(const QString &text)
{
    static const QRegularExpression format(u"\\A([0-9]{2})-([0-9]{2})-([0-9]{4})\\z"_s);
    const QRegularExpressionMatch match = format.match(text);
    if (!match.hasMatch()) {
        return {};
    }
    return {match.captured(3).toInt(), match.captured(2).toInt(), match.captured(1).toInt()};
}

void checkOrder(const QJsonArray &tasks, TaskOrder order)
{
    const QList<ListedTask> rows = listed(rowsInOrder(tasks, order));
    expect(isPermutation(rows, listed(tasks)), "every order shows each task once");
    if (order == TaskOrder::Title) {
        expect(isInTitleOrder(rows), "titles ascend by code unit");
    } else if (order != TaskOrder::Urgency) {
        expect(rows == listed(tasks), "any other order is the file's");
    }
}

/// Rank by rank, the rows are the tasks of that rank.
void checkUrgencyOrder(const QJsonArray &tasks)
{
    const QList<ListedTask> rows = listed(rowsInOrder(tasks, TaskOrder::Urgency));
    qsizetype from = 0;
    for (int rank = 0; rank <= 5; ++rank) {
        QJsonArray ofRank;
        for (const auto &record : tasks) {
            if (rankOf(record) == rank) {
                ofRank.append(record);
            }
        }
        expect(isPermutation(rows.mid(from, ofRank.size()), listed(ofRank)), "tasks ascend by urgency");
        from += ofRank.size();
    }
    expect(from == rows.size(), "each task has a rank");
}

void checkSearch(const QJsonArray &tasks, const QString &search)
{
    QList<ListedTask> expected;
    for (const ListedTask &task : listed(tasks)) {
        if (task.title.indexOf(search, 0, Qt::CaseInsensitive) != -1) {
            expected.append(task);
        }
        expect(search != task.title || task.title.contains(search, Qt::CaseInsensitive),
            "a title is found by itself");
    }
    expect(listed(rowsMatching(tasks, search)) == expected, "a search shows what contains it, in file order");
}

void markRecord(const QJsonValue &record)
{
    markSeen(3, static_cast<std::uint32_t>(record.type()));
    markSeen(4, magnitude(record.toObject().size()));
    const QStringList keys
        = {u"id"_s, u"title"_s, u"description"_s, u"category"_s, u"dateLimit"_s, u"urgency"_s};
    std::uint32_t key = 8;
    for (const QString &name : keys) {
        const QJsonValue value = record.toObject().value(name);
        markSeen(++key, static_cast<std::uint32_t>(value.type()) * 64 + magnitude(value.toString().size()));
    }
    std::uint32_t kinds = 0; // of characters in the title
    const QString title = textOf(record, u"title"_s);
    for (const QChar unit : title) {
        kinds |= 1U << static_cast<std::uint32_t>(unit.category());
        markSeen(16, static_cast<std::uint32_t>(unit.direction()));
    }
    markSeen(17, kinds);
    markSeen(18, static_cast<std::uint32_t>(rankOf(record)));
    markSeen(19, dateIn(textOf(record, u"dateLimit"_s)).isValid() ? 1 : 0);
}

} // namespace

QList<ListedTask> listed(const QJsonArray &tasks)
{
    QList<ListedTask> rows;
    for (const auto &record : tasks) {
        rows.append({textOf(record, u"title"_s), textOf(record, u"id"_s)});
    }
    return rows;
}

QList<ListedTask> listed(const TaskRows &rows)
{
    expect(rows.titles.size() == rows.ids.size(), "each row has a title and an id");
    QList<ListedTask> tasks;
    for (qsizetype row = 0; row < rows.titles.size(); ++row) {
        tasks.append({rows.titles.at(row), rows.ids.at(row)});
    }
    return tasks;
}

QJsonArray recordsIn(const QByteArray &bytes)
{
    return QJsonDocument::fromJson(bytes).array();
}

QString textOf(const QJsonValue &record, const QString &key)
{
    return record.toObject().value(key).toString();
}

QString storable(const QString &text)
{
    return QString::fromUtf8(text.toUtf8());
}

bool sameStored(const QJsonValue &one, const QJsonValue &other)
{
    return QJsonDocument(QJsonArray{one}).toJson() == QJsonDocument(QJsonArray{other}).toJson();
}

bool isPermutation(QList<ListedTask> some, QList<ListedTask> others)
{
    const auto before = [](const ListedTask &one, const ListedTask &other) {
        return std::tie(one.title, one.id) < std::tie(other.title, other.id);
    };
    std::sort(some.begin(), some.end(), before);
    std::sort(others.begin(), others.end(), before);
    return some == others;
}

bool isInTitleOrder(const QList<ListedTask> &rows)
{
    return std::is_sorted(rows.begin(), rows.end(), [](const ListedTask &one, const ListedTask &other) {
        return codeUnits(one.title) < codeUnits(other.title);
    });
}

QStringList searchesFor(const QJsonArray &tasks)
{
    QStringList searches = {QString(), u"a"_s, u"TAREA"_s, u"ñ"_s};
    if (!tasks.isEmpty()) {
        const QString title = textOf(tasks.last(), u"title"_s);
        searches << title << title.toUpper() << title.mid(title.size() / 2) << title + u'x';
    }
    return searches;
}

void checkRepair(const QJsonArray &tasks)
{
    const std::optional<QJsonArray> repaired = withMissingIdsRepaired(tasks);
    const QList<ListedTask> rows = listed(tasks);
    const bool complete
        = std::none_of(rows.begin(), rows.end(), [](const ListedTask &task) { return task.id.isEmpty(); });
    expect(repaired.has_value() == !complete, "the repair changes something exactly if an id is missing");
    if (!repaired) {
        return;
    }
    expect(repaired->size() == tasks.size(), "the repair keeps the number of tasks");
    QSet<QString> given;
    for (qsizetype i = 0; i < tasks.size(); ++i) {
        checkRepairedRecord(tasks.at(i), repaired->at(i));
        const QString id = textOf(repaired->at(i), u"id"_s);
        expect(!rows.at(i).id.isEmpty() || !given.contains(id), "each id given is another one");
        given.insert(id);
    }
    expect(!withMissingIdsRepaired(*repaired), "what is repaired needs no repair");
}

void checkLists(const QJsonArray &tasks)
{
    expect(listed(rowsInFileOrder(tasks)) == listed(tasks), "the list shows the file");
    for (int order = -1; order <= 3; ++order) {
        checkOrder(tasks, static_cast<TaskOrder>(order));
    }
    checkUrgencyOrder(tasks);
    for (const QString &search : searchesFor(tasks)) {
        checkSearch(tasks, search);
    }
}

void checkReminders(const QJsonArray &tasks)
{
    const QDate today(2026, 3, 5);
    QStringList fromAfternoon;
    QStringList fromMidnight;
    for (const auto &record : tasks) {
        const QString text = textOf(record, u"dateLimit"_s);
        const QDate date = dateIn(text);
        expect(dueDateFromText(text) == date, "a due date is exactly dd-MM-yyyy");
        const qint64 days = date.isValid() ? today.daysTo(date) : -1;
        if (days == 1 || days == 2) {
            fromAfternoon.append(textOf(record, u"title"_s));
        }
        if (days >= 0 && days <= 2) {
            fromMidnight.append(textOf(record, u"title"_s));
        }
    }
    expect(
        titlesDue(tasks, today.startOfDay()) == fromMidnight, "at midnight, today's tasks are due as well");
    expect(titlesDue(tasks, today.startOfDay().addSecs(52200)) == fromAfternoon, "two days are looked ahead");
}

void markTasks(const QByteArray &bytes)
{
    QJsonParseError error;
    const QJsonArray tasks = QJsonDocument::fromJson(bytes, &error).array();
    const auto kind = static_cast<std::uint32_t>(error.error);
    markSeen(1, kind * 64 + (kind == 0 ? 0 : magnitude(error.offset)));
    markSeen(2, magnitude(tasks.size()));
    for (const auto &record : tasks) {
        markRecord(record);
    }
}
