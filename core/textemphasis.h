#pragma once

/// The choices by their index in the chooser; any other index stands for `Off`.
enum class TextEmphasis { Off = 0, On = 1 };

/// Font weight (1 to 1000) of a widget whose own weight is `baseWeight`: 600 at least with emphasis, and its
/// own without.
int emphasisedWeight(int baseWeight, TextEmphasis emphasis);
