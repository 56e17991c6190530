#pragma once

#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QWidget>

class QMouseEvent;
class QWindow;

/**
 * Keeps the further presses of a double click from what the first one brings under the pointer.
 *
 * A press can open a panel, a box or another page where it was made, sooner than a hand that clicks twice
 * comes to its second press. While this lives, a further press counts only on the widget that the first one
 * hit, and never on a push button, which has done its work by then; after a key it is another click. That
 * goes for every window of the program, every button of the mouse and for fingers; nothing else is looked at.
 */
class DoubleClickGuard final : public QObject
{
    Q_DISABLE_COPY_MOVE(DoubleClickGuard)
public:
    explicit DoubleClickGuard(QObject *parent);
    ~DoubleClickGuard() override = default;

    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    bool refusesPress(QWindow *window, const QMouseEvent &press);
    bool isFurther(const QMouseEvent &press) const;

    QPointer<QWidget> m_first; // what the first press hit
    // Of the latest press.
    Qt::MouseButton m_button = Qt::NoButton;
    QPointF m_place;
    quint64 m_time = 0;
    bool m_held = false;
    bool m_refused = false;
};
