#include "mainwindow/screenscale.h"

#include "core/screenscale.h"

#include <QScreen>

#include <algorithm>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize windowWithFrame(1250 + 16, 700 + 40); // in the widest of the usual frames

constexpr char screenScales[] = "QT_SCREEN_SCALE_FACTORS";

bool isScaledByHand()
{
    return qEnvironmentVariableIsSet(screenScales) || qEnvironmentVariableIsSet("QT_SCALE_FACTOR");
}

// Where the window does not fit, Qt is told of a lower scale, of which it takes note when an application
// object is made. Only the one screen: another may have a scale that could not be lowered.
bool lowerScale()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen || isScaledByHand() || QGuiApplication::platformName().startsWith("wayland"_L1)) {
        return false;
    }
    const double scale = screen->devicePixelRatio();
    const QSize area = (QSizeF(screen->availableSize()) * scale).toSize();
    const double fitting = fittingScale(windowWithFrame, area, scale);
    const bool isLower = fitting < scale;
    if (isLower) {
        // Qt passes over a scale of 1, unless it has taken note of another one before.
        const QByteArray name = screen->name().toUtf8();
        qputenv(screenScales, name + "=2;" + name + '=' + QByteArray::number(fitting));
    }
    return isLower;
}

} // namespace

std::unique_ptr<QApplication> makeFittingApplication(int &argc, char *argv[])
{
    const std::vector<char *> arguments(argv, argv + argc + 1);
    auto application = std::make_unique<QApplication>(argc, argv);
    if (lowerScale()) {
        application.reset();
        // It has taken out of the arguments what it knows.
        argc = static_cast<int>(arguments.size()) - 1;
        std::copy(arguments.cbegin(), arguments.cend(), argv);
        application = std::make_unique<QApplication>(argc, argv);
        qunsetenv(screenScales); // not for the programs that are started from here
    }
    return application;
}
