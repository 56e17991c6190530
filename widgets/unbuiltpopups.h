#pragma once

#include <QObject>

class QWidget;

/// Has the choosers of a window build their pop-ups when they are first needed. Told of a new font, a chooser
/// otherwise builds its pop-up at once, to hand the font on and to lay the items out. With Qt 6.8 one that
/// gets items builds it already then.
class UnbuiltPopUps final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(UnbuiltPopUps)
public:
    explicit UnbuiltPopUps(QWidget *window);
    ~UnbuiltPopUps() override = default;

    bool eventFilter(QObject *watched, QEvent *event) override;
};
