#include "widgets/unbuiltpopups.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QEvent>

UnbuiltPopUps::UnbuiltPopUps(QWidget *window)
    : QObject(window)
{
    for (QComboBox *chooser : window->findChildren<QComboBox *>()) {
        chooser->installEventFilter(this);
    }
}

bool UnbuiltPopUps::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::FontChange) {
        return QObject::eventFilter(watched, event);
    }
    const auto *chooser = static_cast<QComboBox *>(watched);
    return !chooser->testAttribute(Qt::WA_WState_Polished) && !chooser->findChild<QAbstractItemView *>();
}
