#include "support/failingopen.h"

#include "support/windows/imports.h"

#include <cwchar>
#include <string_view>

#include <qt_windows.h>

namespace {

constexpr int none = -1;
int failingMode = none;
int opens = 0;

using CreateFileFunction = decltype(&CreateFileW);

int modeOf(DWORD access)
{
    const bool reads = (access & GENERIC_READ) != 0;
    const bool writes = (access & GENERIC_WRITE) != 0;
    return reads && writes ? O_RDWR : writes ? O_WRONLY : reads ? O_RDONLY : none;
}

HANDLE WINAPI createFile(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
    DWORD disposition, DWORD flags, HANDLE model);

const auto realCreateFile = reinterpret_cast<CreateFileFunction>(
    replaceImport("CreateFileW", reinterpret_cast<void *>(&createFile)));

// Qt also opens files to ask for their properties: those accesses have no mode.
HANDLE WINAPI createFile(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
    DWORD disposition, DWORD flags, HANDLE model)
{
    if (std::wstring_view(path).ends_with(L"\\rmc.json") && modeOf(access) != none) {
        ++opens;
        if (modeOf(access) == failingMode) {
            SetLastError(ERROR_ACCESS_DENIED);
            return INVALID_HANDLE_VALUE;
        }
    }
    return realCreateFile(path, access, share, security, disposition, flags, model);
}

} // namespace

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
    return qt_error_string(ERROR_ACCESS_DENIED);
}

int taskFileOpens()
{
    return opens;
}

void resetTaskFileOpens()
{
    opens = 0;
}
