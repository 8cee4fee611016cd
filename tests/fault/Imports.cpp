#include "tests/fault/Imports.h"

#include "tests/fault/Injection.h"

#include <oleauto.h>
#include <olectl.h>
#include <shlwapi.h>

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace fault {

namespace {

// The originals are this program's own: the same functions of the same DLLs.

void* Malloc(std::size_t size) {
    return Fails(Kind::Memory) ? nullptr : std::malloc(size);
}
void* Calloc(std::size_t count, std::size_t size) {
    return Fails(Kind::Memory) ? nullptr : std::calloc(count, size);
}
void* Realloc(void* block, std::size_t size) {
    return Fails(Kind::Memory) ? nullptr : std::realloc(block, size);
}

BSTR WINAPI AllocStringLen(const OLECHAR* text, UINT length) {
    return Fails(Kind::Text) ? nullptr : SysAllocStringLen(text, length);
}

/// A function with an HRESULT that fails with the code of its kind.
template <Kind K, auto Function>
struct Failing;
template <Kind K, class... Arguments, HRESULT(WINAPI* Function)(Arguments...)>
struct Failing<K, Function> {
    static HRESULT WINAPI Call(Arguments... arguments) {
        return Fails(K) ? CodeOf(K) : Function(arguments...);
    }
};
template <Kind K, auto Function>
const void* In() {
    return reinterpret_cast<const void*>(&Failing<K, Function>::Call);
}

HANDLE WINAPI FindFirst(LPCWSTR pattern, WIN32_FIND_DATAW* found) {
    if (Fails(Kind::File)) {
        SetLastError(ERROR_READ_FAULT);
        return INVALID_HANDLE_VALUE;
    }
    return FindFirstFileW(pattern, found);
}
BOOL WINAPI FindNext(HANDLE search, WIN32_FIND_DATAW* found) {
    if (Fails(Kind::File)) {
        SetLastError(ERROR_READ_FAULT);
        return FALSE;
    }
    return FindNextFileW(search, found);
}
HANDLE WINAPI Create(LPCWSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                     DWORD disposition, DWORD flags, HANDLE like) {
    if (Fails(Kind::File)) {
        SetLastError(ERROR_OPEN_FAILED);
        return INVALID_HANDLE_VALUE;
    }
    return CreateFileW(path, access, share, security, disposition, flags, like);
}
BOOL WINAPI Read(HANDLE file, void* buffer, DWORD size, DWORD* read, OVERLAPPED* overlapped) {
    if (Fails(Kind::File)) {
        *read = 0;
        SetLastError(ERROR_READ_FAULT);
        return FALSE;
    }
    return ReadFile(file, buffer, size, read, overlapped);
}
BOOL WINAPI Write(HANDLE file, const void* buffer, DWORD size, DWORD* written, OVERLAPPED* overlapped) {
    if (Fails(Kind::File)) {
        *written = 0;
        SetLastError(ERROR_DISK_FULL);
        return FALSE;
    }
    return WriteFile(file, buffer, size, written, overlapped);
}

// Pictures: from a file, or from the component's own resources.

HRESULT WINAPI StreamOnFile(LPCWSTR path, DWORD mode, IStream** stream) {
    return Fails(Kind::File) ? STG_E_ACCESSDENIED : SHCreateStreamOnFileW(path, mode, stream);
}
HRESULT WINAPI LoadPicture(IStream* stream, LONG size, BOOL keeps, REFIID iid, void** picture) {
    return Fails(Kind::File) ? STG_E_READFAULT : OleLoadPicture(stream, size, keeps, iid, picture);
}
HRESULT WINAPI CreatePicture(PICTDESC* description, REFIID iid, BOOL owns, void** picture) {
    return Fails(Kind::File) ? CTL_E_INVALIDPICTURE
                             : OleCreatePictureIndirect(description, iid, owns, picture);
}

template <class F>
const void* Address(F* function) {
    return reinterpret_cast<const void*>(function);
}

} // namespace

Imports::Imports(HMODULE component) {
    Replace(component, "malloc", Address(&Malloc));
    Replace(component, "calloc", Address(&Calloc));
    Replace(component, "realloc", Address(&Realloc));
    if (!patches_.front().IsImported()) {
        throw std::runtime_error("the component does not take its memory from malloc");
    }

    Replace(component, "SysAllocStringLen", Address(&AllocStringLen));
    Replace(component, "VarBstrFromR4", In<Kind::Text, &VarBstrFromR4>());
    Replace(component, "VarBstrFromR8", In<Kind::Text, &VarBstrFromR8>());
    Replace(component, "LoadTypeLibEx", In<Kind::Text, &LoadTypeLibEx>());
    Replace(component, "VariantCopy", In<Kind::Text, &VariantCopy>());
    Replace(component, "VariantCopyInd", In<Kind::Text, &VariantCopyInd>());
    Replace(component, "VariantChangeType", In<Kind::Text, &VariantChangeType>());
    Replace(component, "VariantChangeTypeEx", In<Kind::Text, &VariantChangeTypeEx>());
    Replace(component, "VarParseNumFromStr", In<Kind::Text, &VarParseNumFromStr>());
    Replace(component, "VarNumFromParseNum", In<Kind::Text, &VarNumFromParseNum>());
    Replace(component, "VarBoolFromStr", In<Kind::Text, &VarBoolFromStr>());
    Replace(component, "CreateErrorInfo", In<Kind::Text, &CreateErrorInfo>());

    Replace(component, "CLSIDFromProgID", In<Kind::Creation, &CLSIDFromProgID>());
    Replace(component, "CoCreateInstance", In<Kind::Creation, &CoCreateInstance>());

    Replace(component, "FindFirstFileW", Address(&FindFirst));
    Replace(component, "FindNextFileW", Address(&FindNext));
    Replace(component, "SHCreateStreamOnFileW", Address(&StreamOnFile));
    Replace(component, "OleLoadPicture", Address(&LoadPicture));
    Replace(component, "OleCreatePictureIndirect", Address(&CreatePicture));
    // The parser reads and writes on behalf of the component.
    for (const wchar_t* name : {L"msxml3.dll", L"msxml6.dll", L"urlmon.dll"}) {
        if (const HMODULE parser = GetModuleHandleW(name)) {
            Replace(parser, "CreateFileW", Address(&Create));
            Replace(parser, "ReadFile", Address(&Read));
            Replace(parser, "WriteFile", Address(&Write));
        }
    }
}

Imports::~Imports() = default;

void Imports::Replace(HMODULE dll, const char* function, const void* replacement) {
    patches_.emplace_back(dll, function, replacement);
}

} // namespace fault
