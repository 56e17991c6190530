#include "core/tasklist.h"

#include "core/task.h"

#include <algorithm>
#include <array>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

struct SortableTask
{
    QString title;
    QString id;
    int rank = 0;
};

std::vector<SortableTask> sortableTasks(const QJsonArray &tasks, TaskOrder order)
{
    std::vector<SortableTask> sortable;
    sortable.reserve(static_cast<std::size_t>(tasks.size()));
    for (const auto &record : tasks) {
        const int rank = order == TaskOrder::Urgency ? urgencyRank(taskUrgency(record)) : 0;
        sortable.push_back({taskTitle(record), taskId(record), rank});
    }
    return sortable;
}

} // namespace

int urgencyRank(const QString &urgency)
{
    constexpr std::array ranked = {"Urgente"_L1, "Alta"_L1, "Media"_L1, "Baja"_L1, "Muy baja"_L1};
    const auto *found = std::find(ranked.begin(), ranked.end(), urgency);
    return found == ranked.end() ? 0 : static_cast<int>(found - ranked.begin()) + 1;
}

TaskRows rowsInFileOrder(const QJsonArray &tasks)
{
    TaskRows rows;
    rows.titles.reserve(tasks.size());
    rows.ids.reserve(tasks.size());
    for (const auto &record : tasks) {
        rows.titles.append(taskTitle(record));
        rows.ids.append(taskId(record));
    }
    return rows;
}

TaskRows rowsInOrder(const QJsonArray &tasks, TaskOrder order)
{
    if (order != TaskOrder::Title && order != TaskOrder::Urgency) {
        return rowsInFileOrder(tasks);
    }
    std::vector<SortableTask> sortable = sortableTasks(tasks, order);
    if (order == TaskOrder::Title) {
        std::ranges::sort(sortable, [](const SortableTask &a, const SortableTask &b) {
            return a.title.compare(b.title, Qt::CaseSensitive) < 0;
        });
    } else {
        std::ranges::sort(sortable, std::ranges::less(), &SortableTask::rank);
    }
    TaskRows rows;
    rows.titles.reserve(tasks.size());
    rows.ids.reserve(tasks.size());
    for (SortableTask &task : sortable) {
        rows.titles.append(std::move(task.title));
        rows.ids.append(std::move(task.id));
    }
    return rows;
}

TaskRows rowsMatching(const QJsonArray &tasks, const QString &searchText)
{
    TaskRows rows;
    for (const auto &record : tasks) {
        const QString title = taskTitle(record);
        if (title.contains(searchText, Qt::CaseInsensitive)) {
            rows.titles.append(title);
            rows.ids.append(taskId(record));
        }
    }
    return rows;
}
