#pragma once

#include <QString>

#include <fcntl.h>

/**
 * While it lives, opening the task file with this access mode (`O_RDONLY`, `O_WRONLY` or `O_RDWR`) fails for
 * want of permission; other files and modes open as ever. Works for root as well, whom permissions do not
 * stop.
 */
class FailingOpen final
{
    Q_DISABLE_COPY_MOVE(FailingOpen)
public:
    explicit FailingOpen(int accessMode);
    ~FailingOpen();

    /// What Qt reports for it.
    static QString errorString();
};

/// How often the task file was opened since the last call of `resetTaskFileOpens`.
int taskFileOpens();
void resetTaskFileOpens();
