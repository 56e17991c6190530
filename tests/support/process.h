#pragma once

#include "support/patience.h"

#include <QList>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>

#include <csignal>
#include <memory>
#include <vector>

/**
 * One user's session: home, settings and temporary folder of its own, and the copies of the program that were
 * started in it.
 *
 * While it lives the test process shares the temporary folder, and with it the instance marker and the local
 * socket. At its end every copy is killed, and what a killed copy leaves in the system goes with it.
 */
class Session final
{
    Q_DISABLE_COPY_MOVE(Session)
public:
    explicit Session(QString program);
    ~Session();

    /// A new copy of the program, under way when this returns.
    QProcess &start();
    int runningCopies() const;

    QString socketPath() const;
    /// The process that listens on the local socket, or 0. Asking it wakes that copy.
    qint64 listener() const;
    /// Whether any copy has built its window: that writes preferences, which nothing else does.
    bool hasBuiltAWindow() const;

    /// The instance markers that the copies and the test process have left in the system so far.
    QList<int> markers() const;
    /// Deletes the file that names the marker, as a cleaner of temporary folders would.
    bool removeMarkerFile() const;

private:
    QString makeFolder(QLatin1StringView name) const;

    QString m_program;
    QByteArray m_formerTemporaryFolder;
    QList<int> m_formerMarkers;
    QTemporaryDir m_folder;
    QTcpServer m_proxy; // accepts and never answers: the update check stays at home
    QProcessEnvironment m_environment;
    std::vector<std::unique_ptr<QProcess>> m_copies;
    QList<qint64> m_processIds;
};

/// Waits for the copy's end; true when it ended by itself, in time and with result 0.
bool endsWell(QProcess &copy);

/// Sends the copy a signal that ends it, and waits until it is gone.
void endBySignal(QProcess &copy, int signal);

#ifdef Q_OS_WIN
inline constexpr int SIGKILL = 9; // the system's own header does not know it
#else
/// A socket with this path as its name, on which nobody listens.
int boundSocket(const QString &path);
#endif
