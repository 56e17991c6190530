#include "app/singleinstancechecker.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QThread>

#include <chrono>
#ifndef Q_OS_WIN
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int markerSize = 1;

// Taking and leaving the marker are several steps on System V (key file, segment, attachment, removal by the
// last one), and copies that start or end at the same moment must not come between them: one would remove the
// key file of another's fresh marker, and a third could then make a second one. So each locks the folder of
// the key files meanwhile. The system frees that lock with the process, and it needs neither a file nor a
// name that could be taken, nor a disk. Where it cannot be had in time, the marker alone has to do.
class MarkerLock final
{
    Q_DISABLE_COPY_MOVE(MarkerLock)
public:
#ifdef Q_OS_WIN
    explicit MarkerLock(std::chrono::milliseconds)
    {
    }
#else
    explicit MarkerLock(std::chrono::milliseconds patience)
        : m_folder(open(QFile::encodeName(QDir::tempPath()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        const QDeadlineTimer limit(patience);
        while (m_folder >= 0 && flock(m_folder, LOCK_EX | LOCK_NB) != 0 && !limit.hasExpired()) {
            QThread::msleep(5);
        }
    }
    ~MarkerLock()
    {
        if (m_folder >= 0) {
            close(m_folder);
        }
    }

private:
    const int m_folder;
#endif
};

// Half a second in all for a second start, which ends at once.
constexpr auto startPatience = 300ms;
constexpr auto endPatience = 150ms;

} // namespace

SingleInstanceChecker::SingleInstanceChecker(QObject *parent)
    : QObject(parent)
    , sharedMemory(u"Quenoli"_s)
{
    const MarkerLock lock(startPatience);
    if (!createMarker()) {
        alreadyRunning = sharedMemory.attach(QSharedMemory::ReadWrite);
    }
}

SingleInstanceChecker::~SingleInstanceChecker()
{
    const MarkerLock lock(endPatience);
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
