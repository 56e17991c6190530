#pragma once

#include <QSet>

#include <functional>
#include <memory>

class QWidget;

/**
 * Sets style sheets of many widgets of a window at the price of polishing each widget once.
 *
 * By itself every call of `QWidget::setStyleSheet` below which anything is polished polishes the widget and
 * all its descendants, twice, and tells each of them, at which a chooser builds its pop-up and lays it out.
 * Sheets nested in one another, set one after another, come to thousands of polishes.
 */
class SheetChanges final
{
public:
    explicit SheetChanges(QWidget *window);
    ~SheetChanges();
    SheetChanges(const SheetChanges &) = delete;
    SheetChanges &operator=(const SheetChanges &) = delete;

    /// Has `change` set sheets. Widgets that are polished follow them when it returns, the others when they
    /// are shown, as ever.
    void make(const std::function<void()> &change);

private:
    class Interlude;

    QWidget *m_window;
    QSet<QWidget *> m_changed; // those whose sheets are not what the form set
    std::unique_ptr<Interlude> m_interlude;
    std::unique_ptr<QWidget> m_asker; // outlived by its style
};
