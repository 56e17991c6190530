#include "core/preferences.h"

#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"

void MainWindow::loadSettings()
{
    ui->SimpleNotify->setChecked(settings.value(preferences::simpleNotify, true).toBool());
    ui->AdvancedNotify->setChecked(settings.value(preferences::advancedNotify, false).toBool());
    ui->changeClose->setChecked(settings.value(preferences::changeClose, false).toBool());
}

void MainWindow::saveSettings()
{
    settings.setValue(preferences::simpleNotify, ui->SimpleNotify->isChecked());
    settings.setValue(preferences::advancedNotify, ui->AdvancedNotify->isChecked());
    settings.setValue(preferences::changeClose, ui->changeClose->isChecked());
}

void MainWindow::handleSimpleNotifyStateChanged(int state)
{
    const bool on = state == Qt::Checked;
    preferences::keep(settings, preferences::simpleNotify, on);
    trayIcon->setVisible(on);
}

void MainWindow::handleAdvancedNotifyStateChanged(int state)
{
    preferences::keep(settings, preferences::advancedNotify, state == Qt::Checked);
}

void MainWindow::handleChangeCloseStateChanged(int state)
{
    preferences::keep(settings, preferences::changeClose, state == Qt::Checked);
}

void MainWindow::handleSoundThemeIndexChanged(int index)
{
    settings.setValue(preferences::soundThemeIndex, index);
}
