#pragma once

#include <QGraphicsDropShadowEffect>
#include <QImage>

class QWidget;

/**
 * Qt's drop shadow of a widget, at a price that goes with what has changed.
 *
 * The base class paints the whole widget, blurs a copy and composes both whenever a pixel of the widget or of
 * its shadow has to be painted, be it for one key in a field. This class keeps the composed picture. Where
 * the widget is opaque nothing painted can change the shadow, so that only what has changed is painted into
 * the picture anew; everywhere else it is composed as the base class does it.
 */
class DropShadow final : public QGraphicsDropShadowEffect
{
    Q_DISABLE_COPY_MOVE(DropShadow)
public:
    /// Becomes the graphics effect of the widget.
    DropShadow(QWidget *widget, QObject *parent);
    ~DropShadow() override = default;

protected:
    void draw(QPainter *painter) override;

private:
    void compose(const QRect &place, QPoint origin, qreal scale);
    void refresh(const QRect &area, QPoint origin);

    QWidget *m_widget;
    QImage m_picture; // widget and shadow
    QRect m_opaque; // the part of the widget that hides whatever is behind it, when the picture was composed
};

/// The distance from the picture's edges beyond which every pixel is opaque; half the smaller side, rounded
/// up, if the innermost pixel is not. For pictures in the format ARGB32_Premultiplied.
int opaqueInset(const QImage &picture);
