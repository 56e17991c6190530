#include "widgets/parkedpanel.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QEvent>
#include <QWidget>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isParked(const QWidget *panel)
{
    const QWidget *focus = panel->window()->focusWidget();
    return !panel->parentWidget()->rect().intersects(panel->geometry()) && focus != panel
        && !panel->isAncestorOf(focus);
}

class PanelInterface final : public QAccessibleWidget
{
public:
    explicit PanelInterface(QWidget *panel)
        : QAccessibleWidget(panel, QAccessible::Grouping)
    {
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        if (isParked(widget())) {
            state.invisible = true;
            state.offscreen = true;
        } else {
            state.focusable = true; // as it gets the focus, though not by Tab or a click
        }
        return state;
    }

    int childCount() const override { return isParked(widget()) ? 0 : QAccessibleWidget::childCount(); }

    QAccessibleInterface *child(int index) const override
    {
        return isParked(widget()) ? nullptr : QAccessibleWidget::child(index);
    }

    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return isParked(widget()) ? -1 : QAccessibleWidget::indexOfChild(child);
    }
};

// A name is all there is of a panel while the form is being built.
QAccessibleInterface *makePanelInterface(const QString &, QObject *object)
{
    const bool slides
        = object->objectName().startsWith("TaskDetail"_L1) || object->objectName() == "FrameUpdater"_L1;
    return slides && object->isWidgetType() ? new PanelInterface(qobject_cast<QWidget *>(object)) : nullptr;
}

void send(QObject *object, QAccessible::Event type)
{
    QAccessibleEvent event(object, type);
    QAccessible::updateAccessibility(&event);
}

} // namespace

void tellParkedPanelsAsHidden()
{
    QAccessible::installFactory(makePanelInterface);
}

ParkedPanel::ParkedPanel(QWidget *panel)
    : QObject(panel)
    , m_panel(panel)
    , m_parked(isParked(panel))
{
    panel->installEventFilter(this);
}

bool ParkedPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Move || event->type() == QEvent::FocusIn) {
        tell();
    } else if (event->type() == QEvent::Show) {
        // Qt is about to tell that it shows, as of everything on a page that appears.
        QMetaObject::invokeMethod(this, &ParkedPanel::contradict, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

void ParkedPanel::tell()
{
    const bool parked = isParked(m_panel);
    if (parked == m_parked) {
        return;
    }
    m_parked = parked;
    send(m_panel, parked ? QAccessible::ObjectHide : QAccessible::ObjectShow);
}

void ParkedPanel::contradict()
{
    if (m_parked) {
        send(m_panel, QAccessible::ObjectHide);
    }
}
