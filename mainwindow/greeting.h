#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

/// What a person without a name is called.
QString guestName();

/// The two lines at the top of the side menu.
struct GreetingLines
{
    QString first;
    QString second;

    bool operator==(const GreetingLines &other) const = default;
};

/**
 * What the header says at `now` to a person of this name, in Mexican Spanish whatever the system's locale.
 *
 * Mode 0: weekday, day and month. Mode 1: a greeting by the hour and the name up to its first blank.
 * Mode 2: a salutation with the whole name, and the date as "dd/MM/yyyy". Nothing for any other mode.
 */
std::optional<GreetingLines> greetingLines(int mode, const QDateTime &now, const QString &firstName);
