#include "support/windows/account.h"

#include "support/windows/imports.h"

#include <QDir>

#include <algorithm>

namespace {

BOOL WINAPI profileDirectory(HANDLE, wchar_t *buffer, DWORD *size)
{
    const QString home = QDir::toNativeSeparators(qEnvironmentVariable("HOME"));
    const DWORD needed = static_cast<DWORD>(home.size()) + 1;
    const bool fits = buffer && *size >= needed;
    *size = needed;
    if (fits) {
        *std::copy(home.cbegin(), home.cend(), reinterpret_cast<QChar *>(buffer)) = u'\0';
    }
    return fits ? TRUE : FALSE;
}

} // namespace

OtherAccount::OtherAccount()
{
    replaceImport("GetUserProfileDirectoryW", reinterpret_cast<void *>(&profileDirectory));
    const QString name = QStringLiteral("Software\\NubariaTest%1").arg(GetCurrentProcessId());
    name.toWCharArray(m_name);
    const LSTATUS created = RegCreateKeyExW(HKEY_CURRENT_USER, m_name, 0, nullptr, REG_OPTION_NON_VOLATILE,
        KEY_ALL_ACCESS, nullptr, &m_key, nullptr);
    if (created != ERROR_SUCCESS || RegOverridePredefKey(HKEY_CURRENT_USER, m_key) != ERROR_SUCCESS) {
        qFatal("no key of the registry for the test");
    }
}

OtherAccount::~OtherAccount()
{
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegCloseKey(m_key);
    RegDeleteTreeW(HKEY_CURRENT_USER, m_name);
}
