#pragma once

#include "support/window.h"

#include <QCheckBox>
#include <QComboBox>

/// The window's check box of this name.
inline QCheckBox &box(const MainWindow &window, const char *name)
{
    return *widget<QCheckBox>(window, name);
}

/// The window's chooser of this name.
inline QComboBox &combo(const MainWindow &window, const char *name)
{
    return *widget<QComboBox>(window, name);
}
