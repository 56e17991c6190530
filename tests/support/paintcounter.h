#pragma once

#include <QEvent>
#include <QObject>

/// Counts how often a widget is painted, or any widget where it watches the application.
class PaintCounter final : public QObject
{
    Q_DISABLE_COPY_MOVE(PaintCounter)
public:
    explicit PaintCounter(QObject *watched) { watched->installEventFilter(this); }
    int count() const { return m_count; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        m_count += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

private:
    int m_count = 0;
};
