#pragma once

/// Has Qt find our own pictures first when it asks for one by name, and those of the desktop's theme for any
/// other name. The indexes of the desktop's themes run to thousands of lines; nothing at the start needs them
/// then.
void useOwnIcons();
