#include "mainwindow/reports.h"

#include "mainwindow/mainwindow.h"

#include <QDebug>
#include <QMessageBox>

using namespace Qt::Literals::StringLiterals;

void logFileError(const char *line, const QString &error)
{
    qCritical() << line << error;
}

void MainWindow::reportInBox(const FileReport &report, const QString &error)
{
    logFileError(report.log, error);
    QMessageBox::critical(this, u"Error"_s, report.shown + error);
}

void MainWindow::reportInTray(const FileReport &report, const QString &error)
{
    logFileError(report.log, error);
    showTrayMessage(u"Error"_s, report.shown + error);
}
