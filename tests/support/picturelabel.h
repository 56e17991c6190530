#pragma once

#include <QSize>

/// Of the label that shows the picture of the profile.
inline constexpr QSize labelSize(75, 75);
