#include "widgets/assistancewatch.h"

#include <utility>

AssistanceWatch::AssistanceWatch(QObject *parent, std::function<void()> begin)
    : QObject(parent)
    , m_begin(std::move(begin))
{
    QAccessible::installActivationObserver(this);
    accessibilityActiveChanged(QAccessible::isActive());
}

AssistanceWatch::~AssistanceWatch()
{
    QAccessible::removeActivationObserver(this);
}

void AssistanceWatch::accessibilityActiveChanged(bool active)
{
    if (active && m_begin) {
        std::exchange(m_begin, nullptr)();
    }
}
