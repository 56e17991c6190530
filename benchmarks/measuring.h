#pragma once

#include <QEvent>
#include <QObject>
#include <QWidget>

#include <functional>

/// Processor time of the whole process so far, in milliseconds.
double processorTime();

/// Tells when a widget has been painted.
class Paints final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Paints)
public:
    explicit Paints(QWidget *widget);

    /// Handles events until the widget has been painted since the last call of `forget`.
    void await();
    void forget() { m_seen = false; }
    bool seen() const { return m_seen; }

    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    bool m_seen = false;
};

/// Handles events for longer than any slide takes, so that nothing of what went before is left.
void settle();

/// What one measurement takes, in milliseconds of processor time.
using Measurement = std::function<double()>;

/// The processor time from the call of the operation until the widget is painted.
double untilPainted(QWidget *widget, const std::function<void()> &operation);

/// What is measured, and how often.
struct Runs
{
    int count = 0;
    bool floor = true;
    bool own = true;
};

/// Prints "FLOOR OWN" for each of the runs, which alternate: floor, own, floor, own... What is left out is 0.
void alternate(const Runs &runs, const Measurement &floor, const Measurement &own);
