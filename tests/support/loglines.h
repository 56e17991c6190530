#pragma once

#include <QTest>

/// Fails the case unless it logs this critical line about a file that could not be opened.
inline void expectFileError(const char *line, const QString &error)
{
    const QByteArray message = QByteArray(line) + " \"" + error.toUtf8() + '"';
    QTest::ignoreMessage(QtCriticalMsg, message.constData());
}
