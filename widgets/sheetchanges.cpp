#include "widgets/sheetchanges.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QCommonStyle>
#include <QCoreApplication>
#include <QEvent>
#include <QHash>
#include <QWidget>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isPolished(const QWidget *widget)
{
    return widget->testAttribute(Qt::WA_WState_Polished);
}

/// What its items look like is decided while the pop-up is built, and when the chooser is told.
bool hasPopUp(const QWidget *widget)
{
    return qobject_cast<const QComboBox *>(widget) && widget->findChild<QAbstractItemView *>();
}

void polish(QWidget *widget)
{
    widget->style()->polish(widget);
    QEvent event(QEvent::StyleChange);
    QCoreApplication::sendEvent(widget, &event);
}

} // namespace

/// While a style that follows sheets asks the style beneath it, no other one follows any sheet, lest they ask
/// each other forever. This is such a style beneath: it changes the sheets when it is asked.
class SheetChanges::Interlude final : public QCommonStyle
{
public:
    const QWidget *window = nullptr;
    const std::function<void()> *change = nullptr;

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
        QStyleHintReturn *returned) const override
    {
        if (hint == SH_CustomBase) {
            (*change)();
        }
        return QCommonStyle::styleHint(hint, option, widget, returned);
    }

    /// Nobody in the window is told of a look that has not been found yet.
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        return event->type() == QEvent::StyleChange && watched != window;
    }
};

SheetChanges::SheetChanges(QWidget *window)
    : m_window(window)
    , m_interlude(std::make_unique<Interlude>())
    , m_asker(std::make_unique<QWidget>())
{
    m_interlude->window = window;
    m_asker->setStyle(m_interlude.get());
    m_asker->setStyleSheet(u"*{}"_s); // puts a style that follows sheets above
}

SheetChanges::~SheetChanges() = default;

void SheetChanges::make(const std::function<void()> &change)
{
    const QList<QWidget *> widgets = m_window->findChildren<QWidget *>();
    QHash<QWidget *, QString> sheets;
    for (QWidget *widget : widgets) {
        sheets.insert(widget, widget->styleSheet());
    }
    m_interlude->change = &change;
    QCoreApplication::instance()->installEventFilter(m_interlude.get());
    m_asker->style()->styleHint(QStyle::SH_CustomBase, nullptr, m_asker.get());
    QCoreApplication::instance()->removeEventFilter(m_interlude.get());

    for (QWidget *widget : widgets) {
        if (widget->styleSheet() != sheets.value(widget)) {
            m_changed.insert(widget);
        }
        if (isPolished(widget) || hasPopUp(widget)) {
            polish(widget);
        } else if (m_changed.contains(widget)) {
            // Being polished, only what has looked for its rules before forgets what it read then.
            widget->style()->styleHint(QStyle::SH_CustomBase, nullptr, widget);
        }
    }
}
