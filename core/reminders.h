#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QStringList>

/**
 * Titles, in file order, of the tasks that fall due from `now` to the same time two days later, both
 * included.
 *
 * A task falls due at the first moment of its day, so that one due today counts at midnight only. A date that
 * does not parse counts as past. `now` is local time.
 */
QStringList titlesDue(const QJsonArray &tasks, const QDateTime &now);
