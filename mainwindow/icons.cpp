#include "mainwindow/icons.h"

#include <QIcon>

using namespace Qt::Literals::StringLiterals;

void useOwnIcons()
{
    QIcon::setFallbackThemeName(QIcon::themeName());
    QIcon::setThemeName(u"nubaria"_s);
}
