#pragma once

#include <QDate>
#include <QString>

#include <optional>

/// The parts of a date, numbered as they are shown.
inline constexpr int dayPart = 0;
inline constexpr int monthPart = 1;
inline constexpr int yearPart = 2;

/// What typing has made of a date, and the part that the next digit goes to.
struct TypedDate
{
    QDate date;
    int part = dayPart;
};

/**
 * What has been typed of a date, beginning in one of its parts, put into the date that was there before.
 *
 * A part ends with a separator, which is anything but a digit, or when it is full. Two digits mean a year
 * from 2000 on, four of them one from 1900 to 2199. What is more than fits behind the first part is a whole
 * date, wherever it was begun. Days and months that do not exist become the nearest that do.
 *
 * Nothing when more than a whole date was typed.
 */
std::optional<TypedDate> typedDate(const QString &typed, int firstPart, QDate before);
