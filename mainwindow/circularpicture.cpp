#include "mainwindow/circularpicture.h"

#include <QBitmap>
#include <QPainter>

#include <algorithm>

QPixmap circularPicture(const QString &path, QSize size)
{
    const QPixmap picture(path);
    if (picture.isNull()) {
        return {};
    }
    const int side = std::min(picture.height(), picture.width());
    const int left = (picture.width() - side) / 2;
    const int top = (picture.height() - side) / 2;
    QPixmap circular
        = picture.copy(left, top, side, side).scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);

    QBitmap mask(size);
    mask.fill(Qt::color0);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::color1);
    painter.drawEllipse(0, 0, size.width(), size.height());
    painter.end();
    circular.setMask(mask);
    return circular;
}
