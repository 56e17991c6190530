#pragma once

#include <QApplication>

#include <memory>

/**
 * The application object, at a scale at which the window fits the work area of the primary screen.
 *
 * That is the screen's own scale, unless the window would not fit. Scales that were set by hand, and those of
 * a Wayland compositor, which does not tell its work area, stay as they are.
 *
 * \param argc, argv those of `main`; they have to outlive the object.
 */
std::unique_ptr<QApplication> makeFittingApplication(int &argc, char *argv[]);
