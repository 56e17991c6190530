#include "mainwindow/instance.h"

#include "mainwindow/mainwindow.h"

#include <QApplication>
#include <QLocalServer>
#include <QLocalSocket>

namespace {

/// A socket that is not read keeps all that is sent: of a flood it is to keep no more than a message's worth.
void dropExcess(QLocalSocket *socket)
{
    constexpr qint64 message = 1024;
    if (const qint64 excess = socket->bytesAvailable() - message; excess > 0) {
        socket->skip(excess);
    }
}

} // namespace

void MainWindow::handleNewInstanceConnection()
{
    // The connection is the message: what is sent over it is not read.
    if (QLocalSocket *socket = localServer->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QLocalSocket::deleteLater);
        connect(socket, &QLocalSocket::readyRead, socket, [socket] { dropExcess(socket); });
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
    // Also where Qt takes it for active: it does so for a while after the window was minimised.
    activateWindow();
}

void MainWindow::flashTaskbarIcon()
{
    QApplication::alert(this, 0);
}
