#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

namespace contract {

/// A member as the text of its interface spells it.
struct IdlMember {
    std::string name;
    std::vector<std::string> parameters;
};

/// The names in the text of an IDL file, as they are spelt there.
struct IdlSource {
    std::string library;
    /// Members in the order of the text, which is the order of the slots.
    std::map<std::string, std::vector<IdlMember>> interfaces;
    std::map<std::string, std::vector<std::string>> enumerations;
    std::set<std::string> classes;
};

/// Reads one of the project's IDL files, named without extension. Throws when
/// it is not there or is not written as the others are.
IdlSource ReadIdl(const std::string& name);

} // namespace contract
