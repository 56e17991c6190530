#pragma once

#include <QSize>

/**
 * The scale at which a window fits the work area of its screen: the screen's own scale, or else the highest
 * quarter below it at which it fits.
 *
 * Never below 1, whether it fits then or not: there the toolkit draws only parts of what changes.
 *
 * \param window with its frame, in its own pixels.
 * \param area in the screen's pixels.
 */
double fittingScale(QSize window, QSize area, double screenScale);
