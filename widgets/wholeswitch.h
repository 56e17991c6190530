#pragma once

#include <QObject>

class QCheckBox;
class QLabel;

/**
 * Lets a check box that is drawn as a switch, and the labels beside it, answer to a click anywhere on them.
 *
 * Qt's check box answers on its indicator and its text alone, which leaves of a switch no more than the knob.
 */
class WholeSwitch final : public QObject
{
    Q_DISABLE_COPY_MOVE(WholeSwitch)
public:
    /// Lives as long as the check box.
    WholeSwitch(QCheckBox *box, const QList<QLabel *> &labels);
    ~WholeSwitch() override = default;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool release(const QWidget *widget, QPoint place);

    QCheckBox *m_box;
};
