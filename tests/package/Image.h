#pragma once

#include <windows.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace package {

/// The file of a DLL for this kind of process, read as a file: what stands in it, not what the
/// loader makes of it. Throws when it is none.
class Image {
  public:
    struct Section {
        std::string name;
        DWORD flags;
        /// Bytes that it takes in the file.
        DWORD fileSize;
    };

    explicit Image(const std::wstring& path);

    const IMAGE_FILE_HEADER& File() const { return Headers().FileHeader; }
    const IMAGE_OPTIONAL_HEADER& Optional() const { return Headers().OptionalHeader; }
    std::vector<Section> Sections() const;
    /// Names of exports, and how many there are with those that have no name.
    std::vector<std::string> Exports() const;
    DWORD ExportCount() const;
    /// The functions that are imported from each DLL; ordinals as "12".
    std::map<std::string, std::set<std::string>> Imports() const;

  private:
    template <class T>
    const T* At(DWORD offset) const;
    template <class T>
    const T* AtAddress(DWORD address) const;
    const IMAGE_NT_HEADERS& Headers() const;
    const IMAGE_SECTION_HEADER* SectionHeaders() const;
    DWORD Directory(int index) const { return Optional().DataDirectory[index].VirtualAddress; }

    std::vector<BYTE> bytes_;
};

} // namespace package
