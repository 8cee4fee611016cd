#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace view {

/// Tells a module of a project from its others.
struct ModuleKey {
    std::wstring device;
    /// Of the object on the device.
    int number = 0;
    bool operator==(const ModuleKey&) const = default;
};

/// A module of which a project holds the device stream.
struct ProjectModule {
    ModuleKey key;
    std::wstring name;
    /// Of the stream in the project's text: from its "<" to after its end.
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// In the order of the project's text, which is UTF-8. Empty for a document that is no project.
std::vector<ProjectModule> ModulesOf(const std::string& text);
/// The object number that a text gives, as the component reads it: the number that it begins
/// with. Throws "Overflow", as it does.
int ObjectNumberOf(const std::wstring& text);

} // namespace view
