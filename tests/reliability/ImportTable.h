#pragma once

#include <gtest/gtest.h>

#include <cstring>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

/// @file
/// Takes the place of functions of Windows for the program and for the C library that it has its files and its memory from. Both
/// find them by the tables of what they import.

namespace faults
{

/// @return how many entries of this name the module has, which are the new one from here on.
inline int ReplaceImport(HMODULE hModule, const char* lpcName, void* pNew)
{
    auto* const pBase = reinterpret_cast<unsigned char*>(hModule);
    const auto* const pDos = reinterpret_cast<const IMAGE_DOS_HEADER*>(pBase);
    const auto* const pHeaders = reinterpret_cast<const IMAGE_NT_HEADERS*>(pBase + pDos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& directory = pHeaders->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (directory.VirtualAddress == 0)
        return 0;
    int nReplaced = 0;
    for (auto* p = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(pBase + directory.VirtualAddress); p->Name != 0;
         ++p)
    {
        if (p->OriginalFirstThunk == 0)
            continue;
        const auto* pNamed = reinterpret_cast<const IMAGE_THUNK_DATA*>(pBase + p->OriginalFirstThunk);
        auto* pEntry = reinterpret_cast<IMAGE_THUNK_DATA*>(pBase + p->FirstThunk);
        for (; pNamed->u1.AddressOfData != 0; ++pNamed, ++pEntry)
        {
            if (IMAGE_SNAP_BY_ORDINAL(pNamed->u1.Ordinal))
                continue;
            const auto* const pName = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(pBase + pNamed->u1.AddressOfData);
            if (std::strcmp(reinterpret_cast<const char*>(pName->Name), lpcName) != 0)
                continue;
            DWORD dwRights = 0;
            if (!::VirtualProtect(pEntry, sizeof(*pEntry), PAGE_READWRITE, &dwRights))
                continue;
            pEntry->u1.Function = reinterpret_cast<ULONG_PTR>(pNew);
            ::VirtualProtect(pEntry, sizeof(*pEntry), dwRights, &dwRights);
            ++nReplaced;
        }
    }
    return nReplaced;
}

/// A function of the system, by its own name, which the program and its C library have replaced.
template <class TFunction>
TFunction* Replace(const char* lpcName, TFunction* pfnNew)
{
    const HMODULE hSystem = ::GetModuleHandleW(L"kernel32.dll");
    const auto pfnReal = reinterpret_cast<TFunction*>(reinterpret_cast<void*>(::GetProcAddress(hSystem, lpcName)));
    void* const pNew = reinterpret_cast<void*>(pfnNew);
    ReplaceImport(::GetModuleHandleW(nullptr), lpcName, pNew);
    ReplaceImport(::GetModuleHandleW(L"msvcrt.dll"), lpcName, pNew);
    return pfnReal;
}

} // namespace faults
