#include "core/greeting.h"
#include "core/preferences.h"
#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"

using namespace Qt::Literals::StringLiterals;

void MainWindow::loadDisplayMessageSetting()
{
    const QSettings store = preferences::mainStore();
    ui->DisplayMessage->setCurrentIndex(store.value(preferences::displayMessageIndex, 0).toInt());
}

void MainWindow::updateLabels(int index)
{
    QSettings store = preferences::mainStore();
    preferences::keep(store, preferences::displayMessageIndex, index);
    const QString firstName = store.value(preferences::firstName, QString()).toString();
    const auto mode = static_cast<GreetingMode>(index);
    if (const auto lines = greetingLines(mode, QDateTime::currentDateTime(), firstName)) {
        ui->LabelDayTxt->setText(lines->first);
        ui->LabelDayMonthTxt->setText(lines->second);
    }
}
