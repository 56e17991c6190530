#include "widgets/keyhandler.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include <utility>

KeyHandler::KeyHandler(QWidget *widget, Qt::Key key, Handle handle)
    : QObject(widget)
    , m_widget(widget)
    , m_key(key)
    , m_handle(std::move(handle))
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool KeyHandler::eventFilter(QObject *watched, QEvent *event)
{
    // An open list closes when a key is announced to it; the key itself then comes to what is behind the
    // list.
    if (event->type() == QEvent::ShortcutOverride && watched->isWindowType()) {
        m_isOfPopup = QApplication::activePopupWidget() != nullptr;
    }
    if (watched == m_widget && event->type() == QEvent::KeyPress && !m_isOfPopup
        && isTheKey(*static_cast<QKeyEvent *>(event)) && m_handle()) {
        return true;
    }
    return QObject::eventFilter(watched, event);
}

bool KeyHandler::isTheKey(const QKeyEvent &event) const
{
    // Keys of the number pad, and on some systems the arrows, come with a modifier of their own.
    return event.key() == m_key && (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}
