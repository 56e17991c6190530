#include "mainwindow/mainwindow.h"

#include <QApplication>
#include <QLocalServer>
#include <QLocalSocket>

void MainWindow::handleNewInstanceConnection()
{
    // The connection is the message: what is sent over it is not read.
    if (QLocalSocket *socket = localServer->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QLocalSocket::deleteLater);
    }
    restoreWindow();
    flashTaskbarIcon();
}

void MainWindow::restoreWindow()
{
    if (isMinimized() || !isVisible()) {
        showNormal();
    }
    raise();
    activateWindow();
}

void MainWindow::flashTaskbarIcon()
{
    QApplication::alert(this, 0);
}
