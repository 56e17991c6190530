#include "support/window.h"

#include <QSignalSpy>
#include <QVariantAnimation>

// Slides begun before are over when this one, as long as they are and begun last, is.
bool waitForSlides()
{
    QVariantAnimation last;
    last.setStartValue(0);
    last.setEndValue(1);
    last.setDuration(250);
    QSignalSpy finished(&last, &QVariantAnimation::finished);
    last.start();
    return finished.wait();
}
