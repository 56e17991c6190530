#include "support/window.h"

#include <QPropertyAnimation>
#include <QSignalSpy>
#include <QTest>
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

QRect bannerOf(const MainWindow &window)
{
    const bool slides = !window.findChildren<QPropertyAnimation *>().isEmpty();
    return slides ? QRect() : widget(window, "FrameUpdater")->geometry();
}

bool showActive(MainWindow &window)
{
    window.show();
    return QTest::qWaitForWindowActive(&window);
}
