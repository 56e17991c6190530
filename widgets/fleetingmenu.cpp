#include "widgets/fleetingmenu.h"

#include <QMenu>

void closeAtOnce(QMenu *menu)
{
    QObject::connect(menu, &QMenu::aboutToShow, menu, &QMenu::close, Qt::QueuedConnection);
}
