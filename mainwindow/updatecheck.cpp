#include "mainwindow/updatecheck.h"

#include "mainwindow/mainwindow.h"

#include <QDesktopServices>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkReply>

using namespace Qt::Literals::StringLiterals;

QString programVersion()
{
    return QStringLiteral(NUBARIA_VERSION);
}

QUrl versionDocumentUrl()
{
    return QUrl(QStringLiteral("https://" NUBARIA_UPDATE_HOST "/updates/nubaria/version.json"));
}

QUrl updatePageUrl()
{
    return QUrl(QStringLiteral("https://" NUBARIA_UPDATE_HOST "/updates/nubaria/version"));
}

std::optional<QString> publishedVersion(const QByteArray &document)
{
    const QJsonDocument json = QJsonDocument::fromJson(document);
    if (json.isNull()) {
        return std::nullopt;
    }
    return json.object().value("version"_L1).toString();
}

bool isNewerVersion(const QString &published, const QString &own)
{
    return published.compare(own, Qt::CaseSensitive) > 0;
}

void MainWindow::checkVersion()
{
    QNetworkReply *reply = networkManager.get(QNetworkRequest(versionDocumentUrl()));
    // The manager owns the reply and dies with the window, so the window is alive in every call.
    connect(reply, &QNetworkReply::finished, reply, [this, reply] { handleVersionReply(reply); });
}

void MainWindow::handleVersionReply(QNetworkReply *reply)
{
    reply->deleteLater();
    std::optional<QString> published;
    if (reply->error() == QNetworkReply::NoError) {
        published = publishedVersion(reply->readAll());
    }
    if (!published) {
        showTrayMessage(u"Aviso de actualización"_s, u"Hubo un problema al verificar la actualización."_s);
        return;
    }
    if (isNewerVersion(*published, programVersion())) {
        showUpdateMessage();
        showTrayMessage(u"Nueva versión encontrada"_s,
            u"La actualización de la versión V"_s + *published + u" está disponible para ser instalada."_s);
    }
}

void MainWindow::launchUpdater()
{
    close();
    QDesktopServices::openUrl(updatePageUrl());
}
