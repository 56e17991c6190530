#include "widgets/typeddate.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

qsizetype digitsThatFit(const QString &number, int part)
{
    const bool ofFourDigits
        = number.startsWith("19"_L1) || number.startsWith("20"_L1) || number.startsWith("21"_L1);
    return part >= yearPart && ofFourDigits ? 4 : 2;
}

/// The numbers that were typed, the last one perhaps empty.
QStringList typedNumbers(const QString &typed, int firstPart)
{
    QStringList numbers{QString()};
    for (const QChar character : typed) {
        const int part = firstPart + static_cast<int>(numbers.size()) - 1;
        const QString &number = numbers.constLast();
        if (character.isDigit() && number.size() < digitsThatFit(number, part)) {
            numbers.last() += character;
        } else if (!number.isEmpty()) {
            numbers.append(character.isDigit() ? QString(character) : QString());
        }
    }
    return numbers;
}

int yearOf(const QString &number)
{
    return number.size() == 4 ? number.toInt() : 2000 + number.toInt() % 100;
}

} // namespace

std::optional<TypedDate> typedDate(const QString &typed, int firstPart, QDate before)
{
    constexpr int parts = 3;
    QStringList numbers = typedNumbers(typed, firstPart);
    if (firstPart + numbers.size() > parts) {
        firstPart = dayPart;
        numbers = typedNumbers(typed, firstPart);
    }
    if (numbers.size() > parts) {
        return std::nullopt;
    }
    const QString day = numbers.value(dayPart - firstPart);
    const QString month = numbers.value(monthPart - firstPart);
    const QString year = numbers.value(yearPart - firstPart);
    const int fullYear = year.isEmpty() ? before.year() : yearOf(year);
    const int realMonth = month.isEmpty() ? before.month() : std::clamp(month.toInt(), 1, 12);
    const int lastDay = QDate(fullYear, realMonth, 1).daysInMonth();
    const int realDay = std::clamp(day.isEmpty() ? before.day() : day.toInt(), 1, lastDay);

    const int part = firstPart + static_cast<int>(numbers.size()) - 1;
    const bool full = numbers.constLast().size() == digitsThatFit(numbers.constLast(), part);
    return TypedDate{
        .date = QDate(fullYear, realMonth, realDay), .part = std::min(full ? part + 1 : part, yearPart)};
}
