#pragma once

#include "com/Ref.h"
#include "com/RegistryOwners.h"

#include <windows.h>

#include <oaidl.h>

#include <optional>
#include <span>
#include <string>

namespace com {

/// A type library in the resources of a DLL.
struct DllLibrary {
    Ref<ITypeLib> library;
    std::wstring id;
    /// The DLL, and its resource as the registry names it: "file.dll\2" is the second one.
    std::wstring file;
    std::wstring path;

    /// The library's key below the classes, and that of its file for a kind of process.
    std::wstring Key() const { return L"TypeLib\\" + id; }
    std::wstring KindKey(const wchar_t* kind) const { return Key() + L"\\1.0\\0\\" + kind; }
    /// The folder of the DLL, with the closing backslash.
    std::wstring Folder() const;
    bool Has(REFGUID type) const;
};

/// The file of a registered type library: "file.dll\2" is the second one in it.
std::wstring LibraryFile(std::wstring path);

/// A library of a DLL. Throws CallError.
DllLibrary LoadDllLibrary(const std::wstring& file, int resource);

/// True when another file that exists has the library registered.
bool BelongsToAnother(const DllLibrary& library, const RegistryOwners& owners);

/// The DLLs that carry one library between them. Each is known by its first library,
/// which no other DLL has.
class LibrarySharers {
  public:
    /// Identifiers of the first libraries.
    explicit LibrarySharers(std::span<const std::wstring> ids) noexcept : ids_(ids) {}

    /// True when the library is registered with one of these DLLs, in whatever folder it lies.
    bool Have(const DllLibrary& library, const RegistryOwners& owners) const;
    /// The library in another of these DLLs, which is registered and exists; nothing when
    /// there is none.
    std::optional<DllLibrary> Heir(const DllLibrary& library, int resource,
                                   const RegistryOwners& owners) const;

  private:
    std::span<const std::wstring> ids_;
};

} // namespace com
