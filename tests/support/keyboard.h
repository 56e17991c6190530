#pragma once

#include "support/window.h"

#include <QLineEdit>
#include <QTest>

/// Presses and releases a key in the shown window, wherever its focus is.
inline void press(const MainWindow &window, Qt::Key key, Qt::KeyboardModifiers modifiers = {})
{
    QTest::keyClick(window.windowHandle(), key, modifiers);
}

/// The name of the widget that has the window's focus; empty when none has it.
inline QString focused(const MainWindow &window)
{
    return window.focusWidget() ? window.focusWidget()->objectName() : QString();
}

inline QString textOf(const MainWindow &window, const char *edit)
{
    return widget<QLineEdit>(window, edit)->text();
}
