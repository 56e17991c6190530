#include "support/failingopen.h"

#include <dlfcn.h>

#include <cerrno>
#include <cstdarg>
#include <string_view>

namespace {

constexpr int none = -1;
int failingMode = none;
int opens = 0;

} // namespace

// Qt's library finds this definition before the C library's.
extern "C" Q_DECL_EXPORT int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);

    if (std::string_view(path).ends_with("/rmc.json")) {
        ++opens;
        if ((flags & O_ACCMODE) == failingMode) {
            errno = EACCES;
            return -1;
        }
    }
    using Open = int (*)(const char *, int, ...);
    static const auto realOpen = reinterpret_cast<Open>(dlsym(RTLD_NEXT, "open64"));
    return realOpen(path, flags, mode);
}

FailingOpen::FailingOpen(int accessMode)
{
    failingMode = accessMode;
}

FailingOpen::~FailingOpen()
{
    failingMode = none;
}

QString FailingOpen::errorString()
{
    return qt_error_string(EACCES);
}

int taskFileOpens()
{
    return opens;
}

void resetTaskFileOpens()
{
    opens = 0;
}
