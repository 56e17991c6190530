#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QVariant>

/// The test's home folder and settings, reached without any of the program's own code.
namespace home {

/// Removes everything from the home folder and both settings stores. Call it before each case.
void reset();

QString taskFile();
void writeBytes(const QByteArray &bytes);
QByteArray bytes();

/// Puts a directory where the task file should be: it exists, and every attempt to open it fails.
void blockTaskFile();

/// What Qt says when the task file is opened in this way and cannot be; the words depend on the mode.
QString openError(QIODevice::OpenMode mode = QIODevice::ReadWrite);

void writeTasks(const QJsonArray &tasks);
QJsonArray tasks();

/// A complete record; what matters to a case is changed afterwards.
QJsonObject record(const QString &id, const QString &title);
/// A record in which every text is another, with accents, for cases that compare it whole.
QJsonObject completeRecord();

/// Writes a file that a picture is looked for in. \return its path.
QString writePicture(const QByteArray &bytes);

/// A stored preference, read afresh from disk; invalid when absent.
QVariant preference(const QString &key);
QVariant themePreference(const QString &key);
void setPreference(const QString &key, const QVariant &value);
void setThemePreference(const QString &key, const QVariant &value);

} // namespace home
