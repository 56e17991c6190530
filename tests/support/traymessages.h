#pragma once

#include <QList>
#include <QString>
#include <QSystemTrayIcon>

/// One call of `QSystemTrayIcon::showMessage`, which every test program replaces by a recorder.
struct TrayMessage
{
    QString title;
    QString text;
    QSystemTrayIcon::MessageIcon icon = QSystemTrayIcon::NoIcon;
    int milliseconds = 0;
    bool iconVisible = false; ///< whether the tray icon was visible at the call

    bool operator==(const TrayMessage &other) const = default;
};

namespace traymessages {

void clear();
QList<TrayMessage> all();
QList<TrayMessage> titled(const QString &title);

/// What tells of this version.
QList<TrayMessage> announcement(const QString &version);

/// Fails the case unless this was the only message, given as every message of the program is.
void compareOnly(const QString &title, const QString &text);

} // namespace traymessages
