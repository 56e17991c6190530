#include "widgets/tabstops.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDateTimeEdit>
#include <QKeyEvent>

#include <utility>

namespace {

bool isStop(const QWidget *widget)
{
    const bool takesFocus
        = (widget->focusPolicy() & Qt::TabFocus) || qobject_cast<const QAbstractButton *>(widget);
    return takesFocus && widget->isEnabled() && widget->isVisible();
}

/// Whether the step ends within the widget.
bool hasMoreParts(const QWidget *widget, bool forwards)
{
    const auto *date = qobject_cast<const QDateTimeEdit *>(widget);
    if (!date) {
        return false;
    }
    return forwards ? date->currentSectionIndex() < date->sectionCount() - 1
                    : date->currentSectionIndex() > 0;
}

} // namespace

TabStops::TabStops(QWidget *window, Stops stops)
    : QObject(window)
    , m_window(window)
    , m_stops(std::move(stops))
{
    // A widget acts on Tab before any of its parents sees the key.
    QCoreApplication::instance()->installEventFilter(this);
}

bool TabStops::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !isForUs(watched)) {
        return QObject::eventFilter(watched, event);
    }
    const auto *key = static_cast<QKeyEvent *>(event);
    const bool back = key->key() == Qt::Key_Backtab
        || (key->key() == Qt::Key_Tab && key->modifiers() == Qt::ShiftModifier);
    const bool forwards = key->key() == Qt::Key_Tab && key->modifiers() == Qt::NoModifier;
    if ((!back && !forwards) || hasMoreParts(m_window->focusWidget(), forwards)) {
        return QObject::eventFilter(watched, event);
    }
    go(forwards);
    return true;
}

bool TabStops::isForUs(const QObject *watched) const
{
    const QWidget *focus = m_window->focusWidget();
    return !QApplication::activePopupWidget() && watched == (focus ? focus : m_window);
}

void TabStops::go(bool forwards) const
{
    const QList<QWidget *> stops = m_stops();
    const qsizetype count = stops.size();
    qsizetype place = stops.indexOf(m_window->focusWidget());
    if (place < 0) {
        place = forwards ? -1 : count;
    }
    for (qsizetype step = 0; step < count; ++step) {
        place = (place + (forwards ? 1 : count - 1)) % count;
        if (isStop(stops.at(place))) {
            stops.at(place)->setFocus(forwards ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return;
        }
    }
}
