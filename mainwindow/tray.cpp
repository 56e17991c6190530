#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"

#include <QCloseEvent>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int messageTime = 10000; // milliseconds

} // namespace

void MainWindow::showTrayMessage(const QString &title, const QString &text)
{
    trayIcon->showMessage(title, text, QSystemTrayIcon::Information, messageTime);
}

void MainWindow::trayIconActivated(QSystemTrayIcon::ActivationReason reason)
{
    if (reason != QSystemTrayIcon::DoubleClick) {
        return;
    }
    onTaskViewButtonClicked();
    showNormal();
    activateWindow();
    raise();
}

void MainWindow::openSettingsFromTray()
{
    // A window hidden in the tray stays hidden: the page awaits its return.
    if (isMinimized()) {
        showNormal();
    }
    onSettingsViewButtonClicked();
}

void MainWindow::leave()
{
    leaving = true;
    // quit() would first close every visible window, and give up if one is left: the window hides, but the
    // icon of a tray that embeds it is a window as well.
    QCoreApplication::exit();
}

void MainWindow::exitActionTriggered()
{
    close();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    saveSettings();
    if (ui->changeClose->isChecked()) {
        event->ignore();
        hide();
    } else {
        event->accept();
    }
}

void MainWindow::onTaskAdded()
{
    if (ui->SimpleNotify->isChecked()) {
        showTrayMessage(u"Tarea agregada"_s, u"Una nueva tarea ha sido agregada."_s);
    }
}
