#include "mainwindow/mainwindow.h"

#include <QApplication>
#include <QLocalServer>
#include <QLocalSocket>

void MainWindow::handleNewInstanceConnection()
{
    // The connection is the message: what is sent over it is dropped, or a socket would keep all of it.
    if (QLocalSocket *socket = localServer->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QLocalSocket::deleteLater);
        connect(
            socket, &QLocalSocket::readyRead, socket, [socket] { socket->skip(socket->bytesAvailable()); });
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
