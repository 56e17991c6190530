#pragma once

#include <QObject>

class QWidget;

/**
 * Gives the focus to a widget of a page when the page appears, unless it is on the page already.
 *
 * Qt takes the focus away from a page that is hidden, to whatever comes next in its own order, be it out of
 * sight.
 */
class FocusOnShow final : public QObject
{
    Q_DISABLE_COPY_MOVE(FocusOnShow)
public:
    /// Lives as long as the page. The widget may be the page itself, on which keys do nothing.
    FocusOnShow(QWidget *page, QWidget *widget);
    ~FocusOnShow() override = default;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_page;
    QWidget *m_widget;
};
