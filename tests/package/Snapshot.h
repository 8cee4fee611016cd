#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <vector>

namespace package {

enum class Scope { Machine, User };

/// The registry's names do not differ by case.
struct NameLess {
    bool operator()(const std::string& left, const std::string& right) const noexcept {
        return _stricmp(left.c_str(), right.c_str()) < 0;
    }
};

/// Keys ("HKCU CLSID\{…}") with no text and values ("HKCU CLSID\{…} : Name")
/// with their type and data, paths below Software\Classes.
using Lines = std::map<std::string, std::string, NameLess>;

/// A value as the registry has it.
struct Value {
    std::wstring name;
    DWORD type = REG_NONE;
    std::vector<BYTE> data;

    bool operator==(const Value&) const = default;
};

/// A key with its values; the path starts below Software\Classes.
struct Key {
    std::wstring path;
    std::vector<Value> values;

    bool operator==(const Key&) const = default;
};

HKEY Root(Scope scope);
/// "HKLM " or "HKCU ".
std::string Prefix(Scope scope);

/// Every key below Software\Classes of the machine or the user. Read through
/// the registry's own functions, not the DLLs'.
std::vector<Key> ReadKeys(Scope scope);
Lines LinesOf(Scope scope, const std::vector<Key>& keys);

/// The lines of all of them.
Lines Snapshot(Scope scope);
/// Both.
Lines Snapshot();

/// What differs, a line each: "- gone", "+ new", and both for a changed value.
std::string Difference(const Lines& before, const Lines& after);
/// The lines of `after` that are not in `before` just so.
Lines Added(const Lines& before, const Lines& after);

} // namespace package
