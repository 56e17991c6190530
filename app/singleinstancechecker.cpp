#include "app/singleinstancechecker.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int markerSize = 1;

} // namespace

SingleInstanceChecker::SingleInstanceChecker(QObject *parent)
    : QObject(parent)
    , sharedMemory(u"Quenoli"_s)
{
    if (!createMarker()) {
        alreadyRunning = sharedMemory.attach(QSharedMemory::ReadWrite);
    }
}

SingleInstanceChecker::~SingleInstanceChecker()
{
    sharedMemory.detach();
}

bool SingleInstanceChecker::isAlreadyRunning() const
{
    return alreadyRunning;
}

bool SingleInstanceChecker::createMarker()
{
    if (sharedMemory.create(markerSize, QSharedMemory::ReadWrite)) {
        return true;
    }
#ifndef Q_OS_WIN
    // A System V segment outlives a killed copy. The last one to detach removes it, so attaching and
    // detaching clears a stale segment and leaves that of a live copy alone. It must come after the failed
    // create: where only the key file was lost, attach finds nothing until create has made that file anew.
    if (sharedMemory.attach(QSharedMemory::ReadWrite)) {
        sharedMemory.detach();
    }
    return sharedMemory.create(markerSize, QSharedMemory::ReadWrite);
#else
    return false;
#endif
}
