#include "core/updatecheck.h"
#include "mainwindow/mainwindow.h"

#include <QDesktopServices>
#include <QNetworkReply>

using namespace Qt::Literals::StringLiterals;

void MainWindow::checkVersion()
{
    QNetworkReply *reply = networkManager.get(QNetworkRequest(versionDocumentUrl()));
    // The manager owns the reply and dies with the window, so the window is alive in every call.
    connect(reply, &QNetworkReply::finished, reply, [this, reply] { handleVersionReply(reply); });
}

void MainWindow::handleVersionReply(QNetworkReply *reply)
{
    std::optional<QString> published;
    if (reply->error() == QNetworkReply::NoError) {
        published = publishedVersion(reply->readAll());
    }
    if (!published) {
        showTrayMessage(u"Aviso de actualización"_s, u"Hubo un problema al verificar la actualización."_s);
    } else if (isNewerVersion(*published, programVersion())) {
        showUpdateMessage();
        showTrayMessage(u"Nueva versión encontrada"_s,
            u"La actualización de la versión V"_s + *published + u" está disponible para ser instalada."_s);
    }
    reply->deleteLater();
}

void MainWindow::launchUpdater()
{
    close();
    QDesktopServices::openUrl(updatePageUrl());
}
