#pragma once

#include <qt_windows.h>

/**
 * Leads this process's accesses to the account's home folder to the one that `HOME` names at that moment, and
 * those to its part of the registry to an empty key, which goes at the end.
 */
class OtherAccount final
{
public:
    OtherAccount();
    OtherAccount(const OtherAccount &) = delete;
    OtherAccount &operator=(const OtherAccount &) = delete;
    ~OtherAccount();

private:
    wchar_t m_name[64]{};
    HKEY m_key = nullptr;
};
