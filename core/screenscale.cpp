#include "core/screenscale.h"

#include <algorithm>
#include <cmath>

namespace {

bool fits(QSize window, QSize area, double scale)
{
    return window.width() * scale <= area.width() && window.height() * scale <= area.height();
}

double quarterBelow(double scale)
{
    return (std::ceil(scale * 4) - 1) / 4;
}

} // namespace

double fittingScale(QSize window, QSize area, double screenScale)
{
    double scale = screenScale;
    while (scale > 1 && !fits(window, area, scale)) {
        scale = std::max(quarterBelow(scale), 1.0);
    }
    return scale;
}
