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

    /// What the library says of itself; empty without a text.
    std::wstring Help() const;
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

/// True when the library of this identifier lies at a place as the registry names it: a
/// file of its own, or a resource of a program or DLL. Throws std::bad_alloc.
bool HoldsLibrary(const std::wstring& place, const std::wstring& id);

/// True when another file that holds the library has it registered.
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
    /// What the library's key consists of when it is registered with this file, or with none
    /// for this kind of process. What others have in it stays: other versions, languages and
    /// systems, and what says more of a version that another maker has a file of.
    RegistryTree Keys(const DllLibrary& library, bool isRegistered, const RegistryOwners& owners) const;

  private:
    bool IsOneOfThem(const std::wstring& file) const;
    bool HasAnothersFile(const RegistryTree& version) const;

    std::span<const std::wstring> ids_;
};

} // namespace com
