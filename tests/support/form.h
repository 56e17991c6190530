#pragma once

#include "ui_mainwindow.h"

#include <QMainWindow>

/// The form in a window that does nothing with it.
struct Form
{
    Form() { ui.setupUi(&window); }

    QMainWindow window;
    Ui_MainWindow ui{};
};
