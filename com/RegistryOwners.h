#pragma once

#include "com/Registry.h"

#include <windows.h>

#include <span>
#include <string>
#include <vector>

namespace com {

/// The path of everything that a registration writes.
inline constexpr const wchar_t* kClassesPath = L"Software\\Classes\\";

/// A GUID as the registry has it.
std::wstring TextOfGuid(REFGUID guid);
/// A folder is no file. A name without a folder is looked for as the system does when it
/// loads the file. What cannot be looked at now, on a share that does not answer, exists.
bool FileExists(const std::wstring& path);
/// The program of a command line; its path may have blanks without being quoted.
std::wstring ProgramOf(const std::wstring& command);
/// One file may have several paths: a short one, one through a share or a drive that
/// stands for a folder. Of what does not exist, the paths are compared.
bool SameFile(const std::wstring& left, const std::wstring& right);

/// Who has a class, a name, an interface or a type library in the registry. An owner
/// counts while its file exists.
class RegistryOwners {
  public:
    enum class Sees {
        /// What stands in the root itself.
        Root,
        /// What the user's processes find: the root, and after it the machine's part.
        Machine
    };

    RegistryOwners(HKEY root, Sees sees) noexcept : root_(root), sees_(sees) {}

    /// A text below the classes, in a view of the registry; empty when there is none. It is
    /// a key's default value unless another is named.
    std::wstring Text(const std::wstring& path, REGSAM view = 0, const wchar_t* value = nullptr) const;
    /// A key below the classes of the root itself; empty when there is none.
    RegistryTree Tree(const std::wstring& path) const;
    /// The class that a name stands for; empty when there is none.
    std::wstring ClassOfName(const std::wstring& progId) const;
    /// True when the class has a DLL or a program that exists, for either kind of process.
    bool ClassExists(const std::wstring& clsid) const;
    /// True when a DLL or a program that exists, other than this DLL, has the class.
    bool AnotherFileHas(const std::wstring& clsid) const;
    /// The same for the other kind of process.
    bool OtherKindHas(const std::wstring& clsid) const;
    /// True when another type library than version 1.0 of these, or a proxy of its maker's,
    /// marshals the interface.
    bool AnotherMarshals(const std::wstring& iid, std::span<const std::wstring> libraries) const;
    /// The DLL of a class, or its program where it has no DLL that exists; in the other view
    /// as this process reaches it. Empty when it has neither.
    std::wstring FileOf(const std::wstring& clsid, REGSAM view = 0) const;

  private:
    std::vector<std::wstring> KeyNames(const std::wstring& path) const;
    bool LibraryExists(const std::wstring& id) const;
    bool VersionExists(const std::wstring& id, const std::wstring& version) const;

    HKEY root_;
    Sees sees_;
};

} // namespace com
