#pragma once

#include <QList>
#include <QString>
#include <QTest>

/// One line of the log.
struct LogLine
{
    QtMsgType type = QtDebugMsg;
    QString category;
    QString text;
};

/// Collects the log while it lives, also the lines that no case expects.
class LogLines final
{
    Q_DISABLE_COPY_MOVE(LogLines)
public:
    LogLines();
    ~LogLines();

    static QList<LogLine> ofType(QtMsgType type);

private:
    QtMessageHandler m_previous;
};

/// Fails the case unless it logs this critical line about a file that could not be opened.
inline void expectFileError(const char *line, const QString &error)
{
    const QByteArray message = QByteArray(line) + " \"" + error.toUtf8() + '"';
    QTest::ignoreMessage(QtCriticalMsg, message.constData());
}
