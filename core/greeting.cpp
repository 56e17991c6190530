#include "core/greeting.h"

#include <QLocale>

using namespace Qt::Literals::StringLiterals;

namespace {

QString capitalized(QString word)
{
    if (!word.isEmpty()) {
        word[0] = word.at(0).toUpper();
    }
    return word;
}

GreetingLines weekdayAndDate(QDate today)
{
    const QLocale locale(QLocale::Spanish, QLocale::Mexico);
    return {capitalized(locale.dayName(today.dayOfWeek(), QLocale::LongFormat)),
        QString::number(today.day()) + " de "_L1
            + capitalized(locale.monthName(today.month(), QLocale::LongFormat))};
}

QString greetingAtHour(int hour)
{
    if (hour <= 11) {
        return u"¡Buenos días!"_s;
    }
    if (hour <= 17) {
        return u"¡Buenas tardes!"_s;
    }
    return u"¡Buenas noches!"_s;
}

} // namespace

std::optional<GreetingLines> greetingLines(GreetingMode mode, const QDateTime &now, const QString &firstName)
{
    switch (mode) {
    case GreetingMode::WeekdayAndDate:
        return weekdayAndDate(now.date());
    case GreetingMode::HourAndName:
        return GreetingLines{greetingAtHour(now.time().hour()),
            firstName.isEmpty() ? guestName() : firstName.section(u' ', 0, 0)};
    case GreetingMode::NameAndDate:
        return GreetingLines{u"¡Hola, "_s + (firstName.isEmpty() ? guestName() : firstName) + u'!',
            now.toString(u"dd/MM/yyyy")};
    }
    return std::nullopt;
}

QString guestName()
{
    return u"Invitado(a)"_s;
}
