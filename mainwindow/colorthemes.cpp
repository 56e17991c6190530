#include "core/colorthemes.h"
#include "core/preferences.h"
#include "mainwindow/mainwindow.h"

void MainWindow::captureBaseStyleSheets(QWidget *root)
{
    if (!root) {
        return;
    }
    if (!root->styleSheet().isEmpty()) {
        baseStyleSheets.insert(root, root->styleSheet());
    }
    const QList<QWidget *> descendants = root->findChildren<QWidget *>();
    for (QWidget *widget : descendants) {
        if (!widget->styleSheet().isEmpty()) {
            baseStyleSheets.insert(widget, widget->styleSheet());
        }
    }
}

void MainWindow::applyColorTheme(int index)
{
    const QList<ColorReplacement> replacements = themeReplacements(index);
    sheetChanges.make([&] {
        for (auto entry = baseStyleSheets.cbegin(); entry != baseStyleSheets.cend(); ++entry) {
            // Every widget, also one that has this very sheet: what else has changed its look ends here.
            if (QWidget *widget = entry.key()) {
                widget->setStyleSheet(recolored(entry.value(), replacements));
            }
        }
    });
    preferences::keep(themeSettings, preferences::colorIndex, index);
}
