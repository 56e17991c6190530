#include "support/process.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QNetworkProxy>
#include <QSharedMemory>

#include <algorithm>
#include <csignal>
#include <utility>

#include <sys/prctl.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/un.h>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Segment
{
    int id;
    qint64 creator;
};

QList<Segment> sharedMemorySegments()
{
    QFile table(u"/proc/sysvipc/shm"_s);
    if (!table.open(QIODevice::ReadOnly)) {
        qFatal("no table of the shared memory");
    }
    QList<Segment> segments;
    const QList<QByteArray> lines = table.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> columns = line.simplified().split(' ');
        if (columns.size() > 4 && columns[0] != "key") {
            segments.append({columns[1].toInt(), columns[4].toLongLong()});
        }
    }
    return segments;
}

// A marker is known by the inode of its key file, and a disk gives that of a removed file to the next one,
// which may be that of another test: a copy of this one would then find a stranger's marker. In memory no
// number comes again.
QString foldersPlace()
{
    const QString memory = u"/dev/shm"_s;
    return QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
}

} // namespace

Session::Session(QString program)
    : m_program(std::move(program))
    , m_formerTemporaryFolder(qgetenv("TMPDIR"))
    , m_folder(foldersPlace() + "/sXXXXXX"_L1)
    , m_environment(QProcessEnvironment::systemEnvironment())
{
    m_proxy.setProxy(QNetworkProxy::NoProxy);
    if (!m_folder.isValid() || !m_proxy.listen(QHostAddress::LocalHost)) {
        qFatal("no session for the test");
    }
    m_formerMarkers = markers();
    m_environment.insert(u"HOME"_s, makeFolder("home"_L1));
    m_environment.insert(u"XDG_CONFIG_HOME"_s, makeFolder("config"_L1));
    m_environment.insert(u"XDG_RUNTIME_DIR"_s, makeFolder("run"_L1));
    m_environment.insert(u"TMPDIR"_s, makeFolder("tmp"_L1));
    m_environment.insert(u"https_proxy"_s, u"http://127.0.0.1:%1"_s.arg(m_proxy.serverPort()));
    qputenv("TMPDIR", QFile::encodeName(m_environment.value(u"TMPDIR"_s)));
}

Session::~Session()
{
    for (const std::unique_ptr<QProcess> &copy : m_copies) {
        copy->kill();
        copy->waitForFinished();
    }
    // The last one to detach removes the segment, and the one who creates takes the semaphore along.
    QSharedMemory leftOver(u"Quenoli"_s);
    if (!leftOver.create(1)) {
        leftOver.attach();
    }
    leftOver.detach();
    for (const int id : markers()) {
        shmctl(id, IPC_RMID, nullptr);
    }
    qputenv("TMPDIR", m_formerTemporaryFolder);
}

QProcess &Session::start()
{
    auto &copy = *m_copies.emplace_back(std::make_unique<QProcess>());
    copy.setProcessEnvironment(m_environment);
    copy.setProcessChannelMode(QProcess::MergedChannels);
    // A test program that is itself killed cannot end its copies.
    copy.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    copy.start(m_program, QStringList());
    if (!copy.waitForStarted(patience)) {
        qFatal("%s cannot be started: %s", qPrintable(m_program), qPrintable(copy.errorString()));
    }
    m_processIds.append(copy.processId());
    return copy;
}

int Session::runningCopies() const
{
    return static_cast<int>(std::count_if(m_copies.begin(), m_copies.end(),
        [](const std::unique_ptr<QProcess> &copy) { return copy->state() != QProcess::NotRunning; }));
}

QString Session::socketPath() const
{
    return m_environment.value(u"TMPDIR"_s) + "/QuenoliIPC"_L1;
}

qint64 Session::listener() const
{
    QLocalSocket client;
    client.connectToServer(socketPath());
    if (!client.waitForConnected(1000)) {
        return 0;
    }
    ucred peer{};
    socklen_t size = sizeof peer;
    const auto descriptor = static_cast<int>(client.socketDescriptor());
    return getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 ? peer.pid : 0;
}

bool Session::hasBuiltAWindow() const
{
    return !QDir(m_environment.value(u"XDG_CONFIG_HOME"_s)).isEmpty();
}

QList<int> Session::markers() const
{
    QList<int> found;
    for (const Segment &segment : sharedMemorySegments()) {
        const bool ours
            = m_processIds.contains(segment.creator) || segment.creator == QCoreApplication::applicationPid();
        if (ours && !m_formerMarkers.contains(segment.id)) {
            found.append(segment.id);
        }
    }
    return found;
}

bool Session::removeMarkerFile() const
{
    QDir folder(m_environment.value(u"TMPDIR"_s));
    const QStringList files = folder.entryList({u"*sharedmemory*Quenoli*"_s}, QDir::Files);
    return files.size() == 1 && folder.remove(files.first());
}

QString Session::makeFolder(QLatin1StringView name) const
{
    const QString path = m_folder.filePath(name);
    if (!QDir().mkpath(path)
        || !QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)) {
        qFatal("no folder for the session");
    }
    return path;
}

bool endsWell(QProcess &copy)
{
    const bool ended = copy.state() == QProcess::NotRunning || copy.waitForFinished(patience);
    return ended && copy.exitStatus() == QProcess::NormalExit && copy.exitCode() == 0;
}

void endBySignal(QProcess &copy, int signal)
{
    const auto process = static_cast<pid_t>(copy.processId());
    if (process == 0) {
        qFatal("the copy has ended by itself"); // 0 would be all processes of the group
    }
    kill(process, signal);
    if (!copy.waitForFinished(patience)) {
        qFatal("the copy survives signal %d", signal);
    }
}

int boundSocket(const QString &path)
{
    const int bound = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    std::copy_n(
        name.constData(), std::min<qsizetype>(name.size(), sizeof address.sun_path - 1), address.sun_path);
    if (bind(bound, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
        qFatal("no socket at %s", qPrintable(path));
    }
    return bound;
}
