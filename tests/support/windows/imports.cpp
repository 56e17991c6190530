#include "support/windows/imports.h"

#include <QtGlobal>

#include <cstring>

#include <qt_windows.h>

namespace {

template <typename Type> Type *at(HMODULE module, DWORD offset)
{
    return reinterpret_cast<Type *>(reinterpret_cast<char *>(module) + offset);
}

/// Where the library keeps the address of what it imports by this name.
void **slot(HMODULE module, const char *name)
{
    const auto *headers
        = at<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(at<IMAGE_DOS_HEADER>(module, 0)->e_lfanew));
    const DWORD table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (auto *library = at<IMAGE_IMPORT_DESCRIPTOR>(module, table); library->Name != 0; ++library) {
        const auto *names = at<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
        auto *addresses = at<void *>(module, library->FirstThunk);
        for (; names->u1.AddressOfData != 0; ++names, ++addresses) {
            const bool named = !IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal);
            const auto offset = static_cast<DWORD>(names->u1.AddressOfData);
            if (named && std::strcmp(at<IMAGE_IMPORT_BY_NAME>(module, offset)->Name, name) == 0) {
                return addresses;
            }
        }
    }
    return nullptr;
}

} // namespace

void *replaceImport(const char *name, void *replacement)
{
    void **address = slot(GetModuleHandleW(L"Qt6Core.dll"), name);
    DWORD protection = 0;
    if (!address || !VirtualProtect(address, sizeof *address, PAGE_READWRITE, &protection)) {
        qFatal("Qt does not import %s in a way that a test can change", name);
    }
    void *former = *address;
    *address = replacement;
    VirtualProtect(address, sizeof *address, protection, &protection);
    return former;
}
