#include "support/loglines.h"

namespace {

QList<LogLine> &collected()
{
    static QList<LogLine> lines;
    return lines;
}

void collect(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    collected().append({type, QString::fromLatin1(context.category), text});
}

} // namespace

LogLines::LogLines()
    : m_previous(qInstallMessageHandler(collect))
{
    collected().clear();
}

LogLines::~LogLines()
{
    qInstallMessageHandler(m_previous);
}

QList<LogLine> LogLines::ofType(QtMsgType type)
{
    QList<LogLine> lines = collected();
    lines.removeIf([type](const LogLine &line) { return line.type != type; });
    return lines;
}
