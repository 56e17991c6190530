#include "app/singleinstancechecker.h"
#include "support/coretest.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QScopeGuard>
#include <QSemaphore>
#include <QSharedMemory>
#include <QThread>

#ifndef Q_OS_WIN
#include <atomic>
#include <dlfcn.h>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/shm.h>
#include <thread>
#include <unistd.h>
#endif

using namespace Qt::Literals::StringLiterals;

#ifndef Q_OS_WIN
namespace {

key_t keyOfEveryFile = -1; // negative: each has its own

/// The lock that a copy takes while it takes or leaves its marker.
class FolderLock final
{
    Q_DISABLE_COPY_MOVE(FolderLock)
public:
    FolderLock()
        : m_folder(open(QFile::encodeName(QDir::tempPath()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        if (flock(m_folder, LOCK_EX | LOCK_NB) != 0) {
            qFatal("the lock cannot be had");
        }
    }
    ~FolderLock() { close(m_folder); }

private:
    const int m_folder;
};

/// Another copy that is about to take or leave its marker.
class BusyCopy final
{
    Q_DISABLE_COPY_MOVE(BusyCopy)
public:
    BusyCopy() { m_locked.acquire(); }
    ~BusyCopy() { m_thread.join(); }
    bool isDone() const { return m_done; }

private:
    void work()
    {
        const FolderLock lock;
        m_locked.release();
        QThread::msleep(50); // for the test to run into the lock
        m_done = true;
    }

    QSemaphore m_locked;
    std::atomic<bool> m_done = false;
    std::thread m_thread{&BusyCopy::work, this};
};

} // namespace

// Which file gets the key of a lost one is the file system's choice; here it is the test's.
extern "C" key_t ftok(const char *pathname, int proj_id)
{
    static const auto realFtok = reinterpret_cast<key_t (*)(const char *, int)>(dlsym(RTLD_NEXT, "ftok"));
    const key_t key = realFtok(pathname, proj_id);
    return key >= 0 && keyOfEveryFile >= 0 ? keyOfEveryFile : key;
}
#endif

class SingleInstanceCheckerTest final : public CoreTest
{
    Q_OBJECT
private slots:
    void onlyTheFirstHolderOfTheMarkerIsAlone()
    {
        const SingleInstanceChecker first;
        const SingleInstanceChecker second;
        const SingleInstanceChecker third;

        QVERIFY(!first.isAlreadyRunning());
        QVERIFY(second.isAlreadyRunning());
        QVERIFY(third.isAlreadyRunning());
    }

    void theMarkerIsFreeOnceItsHolderIsGone()
    {
        {
            const SingleInstanceChecker former;
        }

        QVERIFY(!QSharedMemory(u"Quenoli"_s).attach());
        QVERIFY(!SingleInstanceChecker().isAlreadyRunning());
    }

    void aSecondStartLeavesTheMarkerToTheFirst()
    {
        const SingleInstanceChecker first;
        for (int start = 0; start < 3; ++start) {
            QVERIFY(SingleInstanceChecker().isAlreadyRunning());
        }

        QVERIFY(QSharedMemory(u"Quenoli"_s).attach());
    }

    void theMarkerIsOneByteThatNobodyTouches()
    {
        const SingleInstanceChecker first;
        QSharedMemory marker(u"Quenoli"_s);
        QVERIFY(marker.attach(QSharedMemory::ReadWrite));
        QCOMPARE(marker.size(), 1);
        auto *content = static_cast<char *>(marker.data());
        QCOMPARE(*content, '\0');
        *content = 'x';

        QVERIFY(SingleInstanceChecker().isAlreadyRunning());

        QCOMPARE(*content, 'x');
    }

    void aCopyThatCanHaveNoMarkerCountsAsTheFirst()
    {
        const QByteArray folder = qgetenv("TMPDIR");
        const auto restore = qScopeGuard([&folder] { qputenv("TMPDIR", folder); });
        QFile noFolder(QFile::decodeName(folder) + "/archivo"_L1);
        QVERIFY(noFolder.open(QIODevice::WriteOnly));
        qputenv("TMPDIR", QFile::encodeName(noFolder.fileName()));
        QVERIFY(!QSharedMemory(u"Quenoli"_s).create(1));

        QVERIFY(!SingleInstanceChecker().isAlreadyRunning());
    }

    void theCheckersMetaObjectCarriesOnlyItsName()
    {
        const QMetaObject &meta = SingleInstanceChecker::staticMetaObject;

        QCOMPARE(QByteArray(meta.className()), QByteArray("SingleInstanceChecker"));
        QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
        QCOMPARE(meta.methodCount(), meta.methodOffset());
        QCOMPARE(meta.propertyCount(), meta.propertyOffset());
        QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
        QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
        QCOMPARE(meta.constructorCount(), 0);
    }

#ifndef Q_OS_WIN
    void theMarkerIsTakenAndLeftOneCopyAfterTheOther()
    {
        const BusyCopy starting;
        auto checker = std::make_unique<SingleInstanceChecker>();
        QVERIFY(starting.isDone());

        const BusyCopy ending;
        checker.reset();
        QVERIFY(ending.isDone());
    }

    void aLockThatSomebodyElseHoldsCostsHalfASecondAtMostAndNoMarker()
    {
        const FolderLock theirs;
        const SingleInstanceChecker first;
        QVERIFY(!first.isAlreadyRunning());
        QElapsedTimer secondStart;
        secondStart.start();

        QVERIFY(SingleInstanceChecker().isAlreadyRunning());

        QVERIFY2(secondStart.elapsed() < 500, qPrintable(QString::number(secondStart.elapsed())));
    }

    void aFreeLockCostsNoTime()
    {
        QElapsedTimer timer;
        timer.start();

        for (int start = 0; start < 10; ++start) {
            const SingleInstanceChecker alone;
        }

        QVERIFY2(timer.elapsed() < 1500, qPrintable(QString::number(timer.elapsed())));
    }

    void aMarkerThatIsLeftWithoutItsFileIsNoOtherCopy()
    {
        keyOfEveryFile = static_cast<key_t>(0x4e750000 | (QCoreApplication::applicationPid() & 0xffff));
        const int stale = shmget(keyOfEveryFile, 1, IPC_CREAT | IPC_EXCL | 0600);
        const auto cleanUp = qScopeGuard([stale] {
            shmctl(stale, IPC_RMID, nullptr);
            keyOfEveryFile = -1;
        });
        QVERIFY(stale >= 0);

        const SingleInstanceChecker first;

        QVERIFY(!first.isAlreadyRunning());
        QVERIFY(SingleInstanceChecker().isAlreadyRunning());
    }
#endif
};

NUBARIA_CORE_TEST_MAIN(SingleInstanceCheckerTest)
#include "singleinstancecheckertest.moc"
