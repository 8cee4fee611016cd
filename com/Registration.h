#pragma once

#include <windows.h>

#include <span>

namespace com {

/// Who has a ProgID or a class that two makers register.
enum class ProgIdRule {
    /// This DLL alone: registering takes the name from another class.
    Own,
    /// Whoever has it first, for as long as that class's file exists: the name and the
    /// class stand for a service that the machine may have from somebody else.
    Shared
};

/// A class of the DLL. Creatable classes have a ProgID.
struct ClassEntry {
    const CLSID* id;
    const wchar_t* progId;
    ProgIdRule rule;
    const wchar_t* description;
    HRESULT (*create)(REFIID iid, void** out);
};

/// What a DLL of this family offers and registers.
struct ServerInfo {
    std::span<const ClassEntry> classes;
    /// Type libraries in the DLL's resources: numbers 1 to this. The first is this DLL's
    /// own; the others lie in another DLL of the family too.
    int libraries;
    /// The first library of that other DLL.
    GUID sibling;
};

enum class Scope { Machine, User };

/// Registers classes and type libraries with their interfaces. All or nothing:
/// on a failure every key that it touches is as it was before the call. A shared
/// library, ProgID and class that another maker's existing file has registered stay
/// that file's. Another DLL of this family gives way. Throws CallError.
void Register(const ServerInfo& server, Scope scope);

/// Removes all that Register writes, and nothing that is another file's or
/// another class's. A shared library goes to the other DLL where that is registered.
/// What is not there is no error. All or nothing, like registering.
void Unregister(const ServerInfo& server, Scope scope);

} // namespace com
