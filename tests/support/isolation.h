#pragma once

#include <QTemporaryDir>

#ifdef Q_OS_WIN
#include "support/windows/account.h"
#endif

/**
 * A home, settings, temporary and runtime folder of the test's own, with a fixed platform, locale and time
 * zone. `NUBARIA_TEST_LOCALE` in the environment asks for another locale than C.
 *
 * Qt caches the settings path on first use and reads the platform when the application object is made, so
 * this precedes both. The folder has a short name because a local socket's path is limited to 107 bytes.
 */
class Isolation final
{
    Q_DISABLE_COPY_MOVE(Isolation)
public:
    Isolation();

private:
    QTemporaryDir m_dir;
#ifdef Q_OS_WIN
    OtherAccount m_account;
#endif
};
