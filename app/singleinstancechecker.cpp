#include "app/singleinstancechecker.h"

#include <QDir>
#include <QLockFile>

#include <chrono>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int markerSize = 1;

// Taking and leaving the marker are several steps on System V (key file, segment, attachment, removal by the
// last one), and copies that start or end at the same moment must not come between them: one would remove the
// key file of another's fresh marker, and a third could then make a second one. A copy killed within frees
// its lock. Where the lock cannot be had, the marker alone has to do.
class MarkerLock final
{
    Q_DISABLE_COPY_MOVE(MarkerLock)
public:
    MarkerLock()
    {
#ifndef Q_OS_WIN
        [[maybe_unused]] const bool locked = m_file.tryLock(std::chrono::seconds(5));
#endif
    }

private:
    QLockFile m_file{QDir::tempPath() + "/Quenoli.lock"_L1};
};

} // namespace

SingleInstanceChecker::SingleInstanceChecker(QObject *parent)
    : QObject(parent)
    , sharedMemory(u"Quenoli"_s)
{
    const MarkerLock lock;
    if (!createMarker()) {
        alreadyRunning = sharedMemory.attach(QSharedMemory::ReadWrite);
    }
}

SingleInstanceChecker::~SingleInstanceChecker()
{
    const MarkerLock lock;
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
