#include "benchmarks/measuring.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <ctime>
#include <iostream>

double processorTime()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return 1e3 * static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_nsec);
}

Paints::Paints(QWidget *widget)
{
    widget->installEventFilter(this);
}

void Paints::await()
{
    const QDeadlineTimer patience(std::chrono::seconds(60));
    QTimer look; // at the patience, when nothing happens
    look.start(std::chrono::seconds(1));
    while (!m_seen) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (patience.hasExpired()) {
            qFatal("a widget is not painted");
        }
    }
}

bool Paints::eventFilter(QObject *, QEvent *event)
{
    m_seen |= event->type() == QEvent::Paint;
    return false;
}

void settle()
{
    constexpr std::chrono::milliseconds quiet(300); // longer than any slide
    QEventLoop loop;
    QTimer::singleShot(quiet, &loop, &QEventLoop::quit);
    loop.exec();
}

double untilPainted(QWidget *widget, const std::function<void()> &operation)
{
    Paints paints(widget);
    const double begin = processorTime();
    operation();
    paints.forget();
    paints.await();
    return processorTime() - begin;
}

void alternate(const Runs &runs, const Measurement &floor, const Measurement &own)
{
    // The first of each fills caches that every later one finds filled.
    for (int run = 0; run <= runs.count; ++run) {
        const double least = runs.floor ? floor() : 0;
        const double took = runs.own ? own() : 0;
        if (run > 0) {
            std::cout << least << ' ' << took << std::endl;
        }
    }
}
