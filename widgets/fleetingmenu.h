#pragma once

class QMenu;

/// Has the menu close as soon as the event loop runs after it opened: one without entries would swallow every
/// key until it is closed by hand.
void closeAtOnce(QMenu *menu);
