#include "core/reminders.h"

#include "core/task.h"

namespace {

constexpr int daysAhead = 2;

} // namespace

QStringList titlesDue(const QJsonArray &tasks, const QDateTime &now)
{
    const QDateTime limit = now.addDays(daysAhead);
    QStringList titles;
    for (const auto &record : tasks) {
        // Where clocks jump at midnight, 00:00 does not exist and the day starts later.
        const QDateTime deadline = dueDateFromText(taskDateLimit(record)).startOfDay();
        if (deadline.isValid() && deadline >= now && deadline <= limit) {
            titles.append(taskTitle(record));
        }
    }
    return titles;
}
