#include "widgets/dropshadow.h"

#include <QPaintEngine>
#include <QPainter>
#include <QWidget>
#include <QtMath>

#include <algorithm>

int opaqueInset(const QImage &picture)
{
    const int width = picture.width(); // asking for it takes longer than looking at a pixel
    const int height = picture.height();
    int inset = 0;
    for (int y = 0; y < height; ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        const int rowDistance = std::min(y, height - 1 - y);
        for (int x = inset; rowDistance >= inset && x < width - inset; ++x) {
            if (qAlpha(line[x]) < 255) {
                inset = std::min({rowDistance, x, width - 1 - x}) + 1;
            }
        }
    }
    return inset;
}

DropShadow::DropShadow(QWidget *widget, QObject *parent)
    : QGraphicsDropShadowEffect(parent)
    , m_widget(widget)
{
    widget->setGraphicsEffect(this);
}

void DropShadow::draw(QPainter *painter)
{
    const QTransform world = painter->worldTransform();
    const QRect place = boundingRectFor(world.mapRect(QRectF(m_widget->rect()))).toAlignedRect();
    const QPoint origin = world.map(QPoint()) - place.topLeft();
    const qreal scale = painter->device()->devicePixelRatio();
    const QRect dirty = painter->deviceTransform()
                            .inverted()
                            .mapRect(QRectF(painter->paintEngine()->systemClip().boundingRect()))
                            .toAlignedRect();
    const QRect area = dirty & m_widget->rect();
    const bool fits = m_picture.size() == place.size() * scale && m_picture.devicePixelRatio() == scale;
    if (!fits || (!area.isEmpty() && !m_opaque.contains(area))) {
        compose(place, origin, scale);
    } else if (!area.isEmpty()) {
        refresh(area, origin);
    }
    painter->save();
    painter->setWorldTransform(QTransform());
    painter->drawImage(place.topLeft(), m_picture);
    painter->restore();
}

void DropShadow::compose(const QRect &place, QPoint origin, qreal scale)
{
    m_picture = QImage(place.size() * scale, QImage::Format_ARGB32_Premultiplied);
    m_picture.setDevicePixelRatio(scale);
    m_picture.fill(Qt::transparent);
    QPainter painter(&m_picture);
    painter.setWindow(place);
    painter.setViewport(QRect(QPoint(), place.size()));
    QGraphicsDropShadowEffect::draw(&painter);
    painter.end();

    const int inset = qCeil(opaqueInset(m_picture) / scale);
    m_opaque = QRect(-origin, place.size()).adjusted(inset, inset, -inset, -inset);
}

void DropShadow::refresh(const QRect &area, QPoint origin)
{
    m_widget->render(&m_picture, origin + area.topLeft(), area, QWidget::DrawChildren);
}
