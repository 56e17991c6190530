#include "widgets/wholeswitch.h"

#include <QCheckBox>
#include <QLabel>
#include <QMouseEvent>

WholeSwitch::WholeSwitch(QCheckBox *box, const QList<QLabel *> &labels)
    : QObject(box)
    , m_box(box)
{
    box->installEventFilter(this);
    for (QLabel *label : labels) {
        label->installEventFilter(this);
    }
}

bool WholeSwitch::eventFilter(QObject *watched, QEvent *event)
{
    const bool press
        = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if ((!press && event->type() != QEvent::MouseButtonRelease) || !m_box->isEnabled()) {
        return QObject::eventFilter(watched, event);
    }
    const auto *mouse = static_cast<QMouseEvent *>(event);
    if (mouse->button() != Qt::LeftButton) {
        return QObject::eventFilter(watched, event);
    }
    if (press) {
        m_box->setDown(true);
        return true;
    }
    return release(static_cast<QWidget *>(watched), mouse->position().toPoint());
}

bool WholeSwitch::release(const QWidget *widget, QPoint place)
{
    // As with any button, a press ends as a click where it began, or not at all.
    const bool pressed = m_box->isDown();
    m_box->setDown(false);
    if (pressed && widget->rect().contains(place)) {
        m_box->click();
    }
    return true;
}
