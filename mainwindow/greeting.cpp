#include "mainwindow/greeting.h"

#include "mainwindow/mainwindow.h"
#include "mainwindow/preferences.h"
#include "ui_mainwindow.h"

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

std::optional<GreetingLines> greetingLines(int mode, const QDateTime &now, const QString &firstName)
{
    switch (mode) {
    case 0:
        return weekdayAndDate(now.date());
    case 1:
        return GreetingLines{greetingAtHour(now.time().hour()),
            firstName.isEmpty() ? guestName() : firstName.section(u' ', 0, 0)};
    case 2:
        return GreetingLines{u"¡Hola, "_s + (firstName.isEmpty() ? guestName() : firstName) + u'!',
            now.toString(u"dd/MM/yyyy")};
    default:
        return std::nullopt;
    }
}

QString guestName()
{
    return u"Invitado(a)"_s;
}

void MainWindow::loadDisplayMessageSetting()
{
    const QSettings store(preferences::organisation, preferences::mainStore);
    ui->DisplayMessage->setCurrentIndex(store.value(preferences::displayMessageIndex, 0).toInt());
}

void MainWindow::updateLabels(int index)
{
    QSettings store(preferences::organisation, preferences::mainStore);
    store.setValue(preferences::displayMessageIndex, index);
    const QString firstName = store.value(preferences::firstName, QString()).toString();
    if (const auto lines = greetingLines(index, QDateTime::currentDateTime(), firstName)) {
        ui->LabelDayTxt->setText(lines->first);
        ui->LabelDayMonthTxt->setText(lines->second);
    }
}
