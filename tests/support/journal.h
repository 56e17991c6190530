#pragma once

#include <QStringList>

/**
 * What the program asked of Qt, in the order of the calls: "SavedTasks.setText 3".
 *
 * A test that has this file among its sources replaces some of Qt's functions by its own, which note the call
 * and go on to Qt's. Pages that appear or vanish, boxes, tray messages and critical log lines stand between
 * them. An object without a name goes by its class.
 */
namespace journal {

/// Forgets what was noted, and notes what comes.
void begin();

/// What was noted since.
QStringList entries();

} // namespace journal
