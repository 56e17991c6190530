#include "widgets/tiplook.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

using namespace Qt::Literals::StringLiterals;

TipLook::TipLook(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool TipLook::eventFilter(QObject *watched, QEvent *event)
{
    // Qt sets a sheet of its own each time, also where a tip that is still shown gets other words.
    if (event->type() == QEvent::StyleChange && watched->isWidgetType() && watched->inherits("QTipLabel")) {
        const QString look = u"font-family: Gantari; color: black; background-color: white;"
                             " border: 1px solid #1c1c1c; padding: 3px;"_s;
        auto *tip = static_cast<QWidget *>(watched);
        if (tip->styleSheet() != look) {
            tip->setStyleSheet(look);
        }
    }
    return QObject::eventFilter(watched, event);
}
