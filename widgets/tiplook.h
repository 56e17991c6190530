#pragma once

#include <QObject>

/**
 * Gives every tool tip of the program the same border and font.
 *
 * A tip takes over the style sheets of the widget that it belongs to, so that it would look now like this,
 * now like that, and without any border over some.
 */
class TipLook final : public QObject
{
    Q_DISABLE_COPY_MOVE(TipLook)
public:
    explicit TipLook(QObject *parent);
    ~TipLook() override = default;

    bool eventFilter(QObject *watched, QEvent *event) override;
};
