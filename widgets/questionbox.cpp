#include "widgets/questionbox.h"

#include <QMessageBox>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

void preferNo(QMessageBox &box)
{
    box.setDefaultButton(QMessageBox::No);
    box.setEscapeButton(QMessageBox::No);
    // On the buttons, so that the box keeps its own sheet. Enter follows the focus, and so does the look; the
    // padding makes room for the wider border.
    const QList<QAbstractButton *> buttons = box.buttons();
    for (QAbstractButton *button : buttons) {
        button->setStyleSheet(u"QPushButton:default { border: 2px solid black; padding: 4px 9px;"
                              " background-color: #e0e0e0; font-weight: bold; }"
                              "QPushButton:default:hover { background-color: #d3d3d3; }"_s);
    }
}
