#include "mainwindow/mainwindow.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>

// Shows the window once, with a home of its own and without a network.
int main(int argc, char *argv[])
{
    const QTemporaryDir home;
    for (const char *name : {"HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "TMPDIR"}) {
        qputenv(name, QFile::encodeName(home.path()));
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("https_proxy", "http://127.0.0.1:9");
    const QApplication application(argc, argv);
    MainWindow window;
    window.show();

    const QString title = "Nubaria"; // what QT_NO_CAST_FROM_ASCII would not compile
    const bool whole = window.windowTitle() == title && QFile::exists(":/fonts/Gantari-Regular.ttf")
        && QFile::exists(":/imageres/quenoliicon.png");
    std::puts(whole ? "whole" : "something is missing");
    return whole ? 0 : 1;
}
