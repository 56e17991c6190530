#pragma once

#include <QFocusFrame>

/**
 * Draws a frame around the widget of a window that has got the focus by a key.
 *
 * It lies outside the widget and is dark, so that it shows whatever the widget's style sheet says, and in
 * every palette. Whoever uses the mouse knows where they clicked, and sees none.
 */
class FocusFrame final : public QFocusFrame
{
    Q_DISABLE_COPY_MOVE(FocusFrame)
public:
    explicit FocusFrame(QWidget *window);
    ~FocusFrame() override = default;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void follow(QWidget *focus);

    QWidget *m_window;
    bool m_byKey = false; // the latest input was one
};
