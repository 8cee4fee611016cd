#pragma once

#include "tests/package/Snapshot.h"

#include <string>
#include <vector>

namespace package {

struct Class {
    std::string id;
    std::string progId;
    std::string description;
};

struct Interface {
    std::string id;
    std::string name;
};

struct Library {
    std::string id;
    std::string help;
    std::vector<Interface> interfaces;
};

/// What one of the two DLLs is and registers.
struct DllFacts {
    const wchar_t* file;
    std::vector<Class> classes;
    Library library;
    /// In the order of their bytes.
    std::vector<std::string> imports;
    const wchar_t* description;
};

const DllFacts& Component();
const DllFacts& HostServices();

/// All keys and values of a registration of a DLL that lies at this path, as a
/// snapshot has them, with the keys above them; with or without the host
/// interfaces, which one of several registered DLLs has.
Lines Registration(const DllFacts& dll, Scope scope, const std::wstring& path, bool withFaces);

} // namespace package
