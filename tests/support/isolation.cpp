#include "support/isolation.h"

#include <QDir>
#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace {

QString madeFolder(const QTemporaryDir &parent, QLatin1StringView name)
{
    const QString path = parent.filePath(name);
    if (!QDir().mkpath(path)
        || !QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)) {
        qFatal("no folder for the test");
    }
    return path;
}

} // namespace

Isolation::Isolation()
    : m_dir(QDir::tempPath() + "/nbXXXXXX"_L1)
{
    if (!m_dir.isValid()) {
        qFatal("no temporary directory for the test");
    }
    qputenv("HOME", QFile::encodeName(madeFolder(m_dir, "home"_L1)));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(madeFolder(m_dir, "config"_L1)));
    qputenv("XDG_CONFIG_DIRS", QFile::encodeName(madeFolder(m_dir, "system"_L1)));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(madeFolder(m_dir, "run"_L1)));
    const QByteArray temporary = QFile::encodeName(madeFolder(m_dir, "tmp"_L1));
    qputenv("TMPDIR", temporary);
#ifdef Q_OS_WIN
    qputenv("TMP", temporary);
    // What Qt takes for the home folder when that of the account is missing.
    qputenv("USERPROFILE", QFile::encodeName(madeFolder(m_dir, "profile"_L1)));
#endif
    const QString locale = qEnvironmentVariable("NUBARIA_TEST_LOCALE", u"C.UTF-8"_s);
    qputenv("LC_ALL", locale.toLatin1());
    qputenv("LANG", locale.toLatin1());
    qunsetenv("LANGUAGE");
    qputenv("TZ", "America/Mexico_City");
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
}
