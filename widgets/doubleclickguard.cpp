#include "widgets/doubleclickguard.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPushButton>
#include <QStyleHints>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace {

/// The widget that Qt will give the press to.
QWidget *hitWidget(QWindow *window, const QMouseEvent &press)
{
    QWidget *popup = QApplication::activePopupWidget();
    QWidget *hit = popup ? popup : QWidget::find(window->winId());
    if (!hit) {
        return nullptr;
    }
    QWidget *child = hit->childAt(hit->mapFromGlobal(press.globalPosition().toPoint()));
    return child ? child : hit;
}

/// Whether all that the press does is to close a popup.
bool isOutsideOfPopup(const QMouseEvent &press)
{
    const QWidget *popup = QApplication::activePopupWidget();
    return popup && !popup->rect().contains(popup->mapFromGlobal(press.globalPosition().toPoint()));
}

} // namespace

DoubleClickGuard::DoubleClickGuard(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool DoubleClickGuard::eventFilter(QObject *receiver, QEvent *event)
{
    // A press that has come to a widget has moved the focus there.
    if (!receiver->isWindowType()) {
        return false;
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return refusesPress(static_cast<QWindow *>(receiver), *static_cast<QMouseEvent *>(event));
    case QEvent::MouseButtonRelease:
        if (static_cast<QMouseEvent *>(event)->button() == m_button) {
            m_held = false;
            return std::exchange(m_refused, false);
        }
        return false;
    case QEvent::KeyPress: // what comes after a key is another click
        m_button = Qt::NoButton;
        return false;
    default:
        return false;
    }
}

bool DoubleClickGuard::refusesPress(QWindow *window, const QMouseEvent &press)
{
    // Qt tells a window of the second press of a double click twice, first as of any other.
    if (m_held && press.type() == QEvent::MouseButtonDblClick) {
        return m_refused;
    }
    QWidget *hit = hitWidget(window, press);
    const bool further = isFurther(press) && !isOutsideOfPopup(press);
    m_first = further ? m_first.get() : hit;
    m_refused = further && (hit != m_first || qobject_cast<QPushButton *>(hit));
    m_button = press.button();
    m_place = press.globalPosition();
    m_time = press.timestamp();
    m_held = true;
    return m_refused;
}

bool DoubleClickGuard::isFurther(const QMouseEvent &press) const
{
    // Without a release it is one and the same press, given again because it has closed a popup.
    if (m_held || press.button() != m_button) {
        return false;
    }
    const QStyleHints *hints = QGuiApplication::styleHints();
    const int reach = std::max(hints->mouseDoubleClickDistance(), hints->touchDoubleTapDistance());
    const QPointF way = press.globalPosition() - m_place;
    return press.timestamp() - m_time < static_cast<quint64>(hints->mouseDoubleClickInterval())
        && std::max(std::abs(way.x()), std::abs(way.y())) <= reach;
}
