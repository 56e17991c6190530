#pragma once

#include <QPixmap>
#include <QSize>
#include <QString>

/**
 * The picture in the file, its centred square scaled to `size` (pixels) and cut to the ellipse that fills it.
 *
 * A null pixmap when the file cannot be loaded. Qt loads none whose pixels would take more than 128 MB
 * (Qt 6.8: 256), and none is tried that claims more beside its pixels than the file holds: a small file
 * cannot claim gigabytes.
 */
QPixmap circularPicture(const QString &path, QSize size);
