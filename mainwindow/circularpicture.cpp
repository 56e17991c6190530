#include "mainwindow/circularpicture.h"

#include <QBitmap>
#include <QImageReader>
#include <QPainter>

#include <algorithm>

namespace {

// Qt limits what a decoder may allocate, in the depth of the file. A one-bit picture passes that limit and
// then grows 32 times when it becomes a pixmap.
bool fitsInMemory(const QString &path)
{
    constexpr qint64 bytesPerPixel = 4;
    constexpr qint64 bytesPerMegabyte = 1 << 20;
    const QSize size = QImageReader(path).size();
    const qint64 bytes = bytesPerPixel * size.width() * size.height();
    return bytes <= bytesPerMegabyte * QImageReader::allocationLimit();
}

} // namespace

QPixmap circularPicture(const QString &path, QSize size)
{
    if (!fitsInMemory(path)) {
        return {};
    }
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
