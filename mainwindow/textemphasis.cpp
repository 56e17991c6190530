#include "core/textemphasis.h"
#include "core/preferences.h"
#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"

void MainWindow::captureBaseFontWeights(QWidget *root)
{
    if (!root) {
        return;
    }
    baseFontWeights.insert(root, root->font().weight());
    const QList<QWidget *> descendants = root->findChildren<QWidget *>();
    for (QWidget *widget : descendants) {
        baseFontWeights.insert(widget, widget->font().weight());
    }
}

void MainWindow::applyTextEmphasis(int mode)
{
    for (auto entry = baseFontWeights.cbegin(); entry != baseFontWeights.cend(); ++entry) {
        QWidget *widget = entry.key();
        if (!widget) {
            continue;
        }
        QFont font = widget->font();
        font.setWeight(
            static_cast<QFont::Weight>(emphasisedWeight(entry.value(), static_cast<TextEmphasis>(mode))));
        widget->setFont(font);
    }
    preferences::keep(settings, preferences::textEmphasis, mode);
}
