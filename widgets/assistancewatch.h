#pragma once

#include <QAccessible>
#include <QObject>

#include <functional>

/// Calls a function once, as soon as assistive technology is at work: what only that needs costs nobody else.
class AssistanceWatch final : public QObject, public QAccessible::ActivationObserver
{
    Q_DISABLE_COPY_MOVE(AssistanceWatch)
public:
    AssistanceWatch(QObject *parent, std::function<void()> begin);
    ~AssistanceWatch() override;

    void accessibilityActiveChanged(bool active) override;

private:
    std::function<void()> m_begin; // empty once it was called
};
