#pragma once

#include <QObject>

class QWidget;

/// Has assistive technology take the panels that slide, while they are parked, for what they are then: out of
/// sight and without anything in them. Qt tells as showing whatever is not hidden. Comes before they are
/// built, as assistive technology that runs already asks while that happens.
void tellParkedPanelsAsHidden();

/**
 * Tells assistive technology when a panel that slides leaves where it is parked, and when it is back.
 *
 * One that has got the focus counts as on its way: it is heard of before the focus is.
 */
class ParkedPanel final : public QObject
{
    Q_DISABLE_COPY_MOVE(ParkedPanel)
public:
    /// Lives as long as the panel.
    explicit ParkedPanel(QWidget *panel);
    ~ParkedPanel() override = default;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void tell();
    void contradict();

    QWidget *m_panel;
    bool m_parked;
};
