#include "core/updatecheck.h"

#include <QJsonDocument>
#include <QJsonObject>

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
