#pragma once

#include <QObject>

#include <functional>

class QWidget;

/**
 * Takes Tab and Shift+Tab in a window from stop to stop, in the order given, round and round.
 *
 * Qt's own order knows one chain for the whole window, in which everything takes part that takes the focus
 * and is not hidden, also where it lies beside the window, and buttons that take no focus by themselves have
 * no place in it. A date editor hands Tab on once its last part is reached.
 */
class TabStops final : public QObject
{
    Q_DISABLE_COPY_MOVE(TabStops)
public:
    /// The stops at this moment. A widget among them that neither takes the focus by Tab nor is a button
    /// marks a place to go on from; what is hidden or disabled is passed over.
    using Stops = std::function<QList<QWidget *>()>;

    /// Lives as long as the window.
    TabStops(QWidget *window, Stops stops);
    ~TabStops() override = default;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isForUs(const QObject *watched) const;
    void go(bool forwards) const;

    QWidget *m_window;
    Stops m_stops;
};
