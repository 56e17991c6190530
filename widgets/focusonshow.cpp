#include "widgets/focusonshow.h"

#include <QEvent>
#include <QWidget>

FocusOnShow::FocusOnShow(QWidget *page, QWidget *widget)
    : QObject(page)
    , m_page(page)
    , m_widget(widget)
{
    page->installEventFilter(this);
}

bool FocusOnShow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show) {
        const QWidget *focus = m_page->window()->focusWidget();
        if (focus != m_page && !m_page->isAncestorOf(focus)) {
            m_widget->setFocus();
        }
    }
    return QObject::eventFilter(watched, event);
}
