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

/// What the header can show, by index in the chooser: weekday, day and month; a greeting by the hour and the
/// name up to its first blank; a salutation with the whole name, and the date as "dd/MM/yyyy".
enum class GreetingMode { WeekdayAndDate = 0, HourAndName = 1, NameAndDate = 2 };

/**
 * What the header says at `now` to a person of this name, in Mexican Spanish whatever the system's locale.
 * Nothing for a mode that is none of the three.
 */
std::optional<GreetingLines> greetingLines(GreetingMode mode, const QDateTime &now, const QString &firstName);
