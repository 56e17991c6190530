#include "mainwindow/textemphasis.h"

#include "mainwindow/mainwindow.h"
#include "mainwindow/preferences.h"
#include "ui_mainwindow.h"

#include <algorithm>

int emphasisedWeight(int baseWeight, int mode)
{
    return mode == 1 ? std::max<int>(baseWeight, QFont::DemiBold) : baseWeight;
}

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
        font.setWeight(static_cast<QFont::Weight>(emphasisedWeight(entry.value(), mode)));
        widget->setFont(font);
    }
    settings.setValue(preferences::textEmphasis, mode);
}
