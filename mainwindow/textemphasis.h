#pragma once

/// Font weight (1 to 1000) of a widget whose own weight is `baseWeight`: mode 1 makes it 600 at least, any
/// other mode leaves it.
int emphasisedWeight(int baseWeight, int mode);
