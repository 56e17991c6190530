#include "widgets/circularpicture.h"

#include <QBitmap>
#include <QFile>
#include <QPainter>
#include <QtEndian>

#include <algorithm>

namespace {

/// Whether a PNG file claims no more, up to its end mark, than it holds; true for any other file. libpng
/// takes memory for a text as soon as it knows the claimed length, so that a file of 41 bytes can cost 2 GB.
/// What stands behind the mark is never read: editors, phones and downloads leave all kinds of things there.
bool holdsWhatItClaims(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.read(8) != "\x89PNG\r\n\x1a\n") {
        return true;
    }
    constexpr qint64 headLength = 8;
    constexpr qint64 checksumLength = 4;
    for (QByteArray head = file.read(headLength); head.size() == headLength; head = file.read(headLength)) {
        const qint64 end = file.pos() + qFromBigEndian<quint32>(head.constData());
        if (end > file.size()) {
            return false;
        }
        if (head.endsWith("IEND")) {
            return true;
        }
        file.seek(end + checksumLength);
    }
    return true;
}

} // namespace

QPixmap circularPicture(const QString &path, QSize size)
{
    const QPixmap picture = holdsWhatItClaims(path) ? QPixmap(path) : QPixmap();
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
