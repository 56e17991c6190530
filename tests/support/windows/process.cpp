#include "support/process.h"

#include <QFile>
#include <QLocalSocket>
#include <QSharedMemory>

#include <algorithm>
#include <utility>

#include <qt_windows.h>
#include <userenv.h>

using namespace Qt::Literals::StringLiterals;

// A copy's home folder and registry are those of the account, whatever its environment says: only an account
// that has no tasks and no preferences of Nubaria's can play the session.
namespace {

constexpr const wchar_t *preferences = L"Software\\Quenoli";

/// Asked of the system itself: Qt's answer is the test's home folder.
QString taskFileOfTheAccount()
{
    HANDLE token = nullptr;
    wchar_t folder[MAX_PATH];
    DWORD size = MAX_PATH;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == FALSE
        || GetUserProfileDirectoryW(token, folder, &size) == FALSE) {
        qFatal("no home folder for the session");
    }
    CloseHandle(token);
    return QString::fromWCharArray(folder) + "/rmc.json"_L1;
}

/// The account's part of the registry, also where the test process has another.
HKEY registryOfTheAccount()
{
    HKEY registry = nullptr;
    if (RegOpenCurrentUser(KEY_ALL_ACCESS, &registry) != ERROR_SUCCESS) {
        qFatal("no registry for the session");
    }
    return registry;
}

bool hasPreferences()
{
    const HKEY registry = registryOfTheAccount();
    HKEY key = nullptr;
    const bool found = RegOpenKeyExW(registry, preferences, 0, KEY_READ, &key) == ERROR_SUCCESS;
    RegCloseKey(key);
    RegCloseKey(registry);
    return found;
}

} // namespace

Session::Session(QString program)
    : m_program(std::move(program))
    , m_environment(QProcessEnvironment::systemEnvironment())
{
    if (hasPreferences() || QFile::exists(taskFileOfTheAccount())) {
        qFatal("this account uses Nubaria: run the test under another");
    }
}

Session::~Session()
{
    for (const std::unique_ptr<QProcess> &copy : m_copies) {
        copy->kill();
        copy->waitForFinished();
    }
    const HKEY registry = registryOfTheAccount();
    RegDeleteTreeW(registry, preferences);
    RegCloseKey(registry);
    QFile::remove(taskFileOfTheAccount());
}

QProcess &Session::start()
{
    auto &copy = *m_copies.emplace_back(std::make_unique<QProcess>());
    copy.setProcessEnvironment(m_environment);
    copy.setProcessChannelMode(QProcess::MergedChannels);
    copy.start(m_program, QStringList());
    if (!copy.waitForStarted(patience)) {
        qFatal("%s cannot be started: %s", qPrintable(m_program), qPrintable(copy.errorString()));
    }
    return copy;
}

int Session::runningCopies() const
{
    return static_cast<int>(std::count_if(m_copies.begin(), m_copies.end(),
        [](const std::unique_ptr<QProcess> &copy) { return copy->state() != QProcess::NotRunning; }));
}

QString Session::socketPath() const
{
    return u"\\\\.\\pipe\\QuenoliIPC"_s;
}

qint64 Session::listener() const
{
    QLocalSocket client;
    client.connectToServer(socketPath());
    if (!client.waitForConnected(1000)) {
        return 0;
    }
    ULONG process = 0;
    const auto pipe = reinterpret_cast<HANDLE>(client.socketDescriptor());
    return GetNamedPipeServerProcessId(pipe, &process) != FALSE ? qint64{process} : 0;
}

bool Session::hasBuiltAWindow() const
{
    return hasPreferences();
}

// It has a name in place of a number, and there is one at most.
QList<int> Session::markers() const
{
    const QString name = QSharedMemory(u"Quenoli"_s).nativeKey();
    const HANDLE marker = OpenFileMappingW(FILE_MAP_READ, FALSE, qUtf16Printable(name));
    return marker && CloseHandle(marker) != FALSE ? QList<int>{0} : QList<int>();
}

bool Session::removeMarkerFile() const
{
    return false; // there is none
}

bool endsWell(QProcess &copy)
{
    const bool ended = copy.state() == QProcess::NotRunning || copy.waitForFinished(patience);
    return ended && copy.exitStatus() == QProcess::NormalExit && copy.exitCode() == 0;
}

// There is one way of ending a process by force.
void endBySignal(QProcess &copy, int signal)
{
    copy.kill();
    if (!copy.waitForFinished(patience)) {
        qFatal("the copy survives signal %d", signal);
    }
}
