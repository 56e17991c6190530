#pragma once

#include "mainwindow/mainwindow.h"

/// Fills the form for a new task; the texts are those of `filledTexts`, but for another title.
void fillForm(const MainWindow &window, const QString &title = QStringLiteral("Comprar piñón"));

/// What the form's fields show, from top to bottom; the date as in ISO 8601.
QStringList formTexts(const MainWindow &window);

/// What they show once the form is filled.
QStringList filledTexts();
