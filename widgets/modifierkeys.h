#pragma once

#include <Qt>

/// Whether this `Qt::Key` only changes what others do: Shift, Ctrl, the locks, AltGr, the Windows key and
/// their like.
constexpr bool isModifier(int key)
{
    return (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) || key == Qt::Key_AltGr
        || key == Qt::Key_Super_L || key == Qt::Key_Super_R;
}
