#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

/// The program's own version, such as "2.0.2027".
QString programVersion();

/// The JSON document that names the latest published version.
QUrl versionDocumentUrl();

/// The page from which a person downloads it.
QUrl updatePageUrl();

/// The version that a document names, empty where it names none as a text; nothing when it is not JSON.
std::optional<QString> publishedVersion(const QByteArray &document);

/// Compares as text, code unit by code unit, on purpose: "3" is newer than "2.0.2027", "2.0.10000" is older.
bool isNewerVersion(const QString &published, const QString &own);
