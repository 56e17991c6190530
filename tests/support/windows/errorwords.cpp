#include "support/windows/imports.h"

#include <cwchar>

#include <qt_windows.h>

// What an error is called depends on the language and version of Windows; the tests know one wording.
namespace {

const wchar_t *wordsFor(DWORD error)
{
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        return L"No such file or directory";
    case ERROR_ACCESS_DENIED:
        return L"Permission denied";
    default:
        return nullptr;
    }
}

DWORD WINAPI formatMessage(
    DWORD flags, LPCVOID source, DWORD id, DWORD language, LPWSTR buffer, DWORD size, va_list *arguments);

const auto realFormatMessage = reinterpret_cast<decltype(&FormatMessageW)>(
    replaceImport("FormatMessageW", reinterpret_cast<void *>(&formatMessage)));

DWORD WINAPI formatMessage(
    DWORD flags, LPCVOID source, DWORD id, DWORD language, LPWSTR buffer, DWORD size, va_list *arguments)
{
    constexpr DWORD systemsOwn = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_ALLOCATE_BUFFER;
    const wchar_t *words = (flags & systemsOwn) == systemsOwn ? wordsFor(id) : nullptr;
    if (!words) {
        return realFormatMessage(flags, source, id, language, buffer, size, arguments);
    }
    const std::size_t length = std::wcslen(words);
    auto *copy = static_cast<wchar_t *>(LocalAlloc(LMEM_FIXED, (length + 1) * sizeof *words));
    *reinterpret_cast<wchar_t **>(buffer) = std::wcscpy(copy, words);
    return static_cast<DWORD>(length);
}

} // namespace
