#include "core/reports.h"

#include <QDebug>

void logFileError(const char *line, const QString &error)
{
    qCritical() << line << error;
}
