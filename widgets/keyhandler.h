#pragma once

#include <QObject>

#include <functional>

class QKeyEvent;
class QWidget;

/**
 * Hands a key without modifiers that reaches a widget, be it left unused by one of its children, to a
 * function.
 *
 * For keys that mean something to other widgets too, such as Escape and the arrows: a shortcut would take
 * them from an open list or calendar.
 */
class KeyHandler final : public QObject
{
    Q_DISABLE_COPY_MOVE(KeyHandler)
public:
    /// Says whether the key was of use; otherwise it goes on its way.
    using Handle = std::function<bool()>;

    /// Lives as long as the widget.
    KeyHandler(QWidget *widget, Qt::Key key, Handle handle);
    ~KeyHandler() override = default;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isTheKey(const QKeyEvent &event) const;

    const QWidget *m_widget;
    Qt::Key m_key;
    Handle m_handle;
    bool m_isOfPopup = false; // the key that was announced last
};
