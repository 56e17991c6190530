#include "core/reports.h"
#include "mainwindow/mainwindow.h"

#include <QMessageBox>

using namespace Qt::Literals::StringLiterals;

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
