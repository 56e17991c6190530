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
    // Qt sets a sheet of its own each time, before it shows the tip.
    if (event->type() == QEvent::Show && watched->isWidgetType() && watched->inherits("QTipLabel")) {
        auto *tip = static_cast<QWidget *>(watched);
        tip->setStyleSheet(u"font-family: Gantari; color: black; background-color: white;"
                           " border: 1px solid #1c1c1c; padding: 3px;"_s);
        tip->resize(tip->sizeHint());
    }
    return QObject::eventFilter(watched, event);
}
