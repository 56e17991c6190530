#include "core/textemphasis.h"

#include <algorithm>

int emphasisedWeight(int baseWeight, TextEmphasis emphasis)
{
    constexpr int semiBold = 600;
    return emphasis == TextEmphasis::On ? std::max(baseWeight, semiBold) : baseWeight;
}
