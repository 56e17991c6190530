#pragma once

#include <QPixmap>
#include <QSize>
#include <QString>

/**
 * The picture in the file, its centred square scaled to `size` (pixels) and cut to the ellipse that fills it.
 *
 * A null pixmap when the file cannot be loaded, or when its pixels would take more memory than Qt's
 * allocation limit for images (128 MB unless changed), which keeps a small file from claiming gigabytes.
 */
QPixmap circularPicture(const QString &path, QSize size);
