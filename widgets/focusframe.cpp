#include "widgets/focusframe.h"

#include "widgets/modifierkeys.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QPainter>
#include <QProxyStyle>

namespace {

constexpr int lineWidth = 2;
constexpr int gap = 2; // between the line and the widget
constexpr qreal cornerRadius = 10;
constexpr QColor darkLine(0x1c, 0x1c, 0x1c);

/// Makes room for line and gap. The usual mask would cut the corners off.
class FrameStyle final : public QProxyStyle
{
public:
    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override
    {
        const bool isMargin = metric == PM_FocusFrameHMargin || metric == PM_FocusFrameVMargin;
        return isMargin ? lineWidth + gap : QProxyStyle::pixelMetric(metric, option, widget);
    }

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
        QStyleHintReturn *returned) const override
    {
        return hint == SH_FocusFrame_Mask ? 0 : QProxyStyle::styleHint(hint, option, widget, returned);
    }
};

/// What a key other than a letter acts on, whichever way the focus came to it.
bool isOperatedByKeys(const QWidget *widget)
{
    return qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QComboBox *>(widget);
}

} // namespace

FocusFrame::FocusFrame(QWidget *window)
    : QFocusFrame(window)
    , m_window(window)
{
    auto *style = new FrameStyle;
    style->setParent(this);
    setStyle(style);
    hide(); // it would be shown with the window, around nothing
    QCoreApplication::instance()->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) {
        if (now != widget()) {
            follow(m_byKey ? now : nullptr);
        }
    });
}

bool FocusFrame::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride: // a shortcut's key comes as nothing else
    case QEvent::KeyPress:
        // Of another program's keys, such as those that bring this window back, only the modifiers arrive.
        if (!isModifier(static_cast<QKeyEvent *>(event)->key())) {
            m_byKey = true;
            if (watched == QApplication::focusWidget() && isOperatedByKeys(QApplication::focusWidget())) {
                follow(QApplication::focusWidget());
            }
        }
        break;
    case QEvent::MouseButtonPress:
        m_byKey = false;
        follow(nullptr);
        break;
    default:
        break;
    }
    const bool used = QFocusFrame::eventFilter(watched, event);
    // Qt takes the frame away for good when the widget gets another style sheet, as with another palette, and
    // puts it beneath the widget's neighbours, which may overlap it.
    const bool matters = event->type() == QEvent::StyleChange || event->type() == QEvent::Show;
    if (matters && watched == widget() && widget()->isVisible()) {
        show();
        raise();
    }
    return used;
}

void FocusFrame::follow(QWidget *focus)
{
    const bool shows = focus && focus->window() == m_window
        && (focus->focusPolicy() != Qt::NoFocus || qobject_cast<QAbstractButton *>(focus));
    QWidget *next = shows ? focus : nullptr;
    // The frame stands for what styles draw themselves after Tab, such as a pale square on the knob of a
    // switch.
    m_window->setAttribute(Qt::WA_KeyboardFocusChange, false);
    if (next != widget()) {
        setWidget(next);
        raise(); // above neighbours that overlap the widget
    }
}

void FocusFrame::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(darkLine, lineWidth));
    constexpr qreal half = lineWidth / 2.0;
    painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), cornerRadius, cornerRadius);
}
