#include "tests/package/Image.h"

#include <cstddef>
#include <stdexcept>

namespace package {

Image::Image(const std::wstring& path) {
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        throw std::runtime_error("the DLL cannot be read");
    }
    bytes_.resize(GetFileSize(file, nullptr));
    DWORD size = 0;
    const BOOL read = ReadFile(file, bytes_.data(), static_cast<DWORD>(bytes_.size()), &size, nullptr);
    CloseHandle(file);
    if (read == FALSE || size != bytes_.size() || At<IMAGE_DOS_HEADER>(0)->e_magic != IMAGE_DOS_SIGNATURE ||
        Headers().Signature != IMAGE_NT_SIGNATURE || Optional().Magic != IMAGE_NT_OPTIONAL_HDR_MAGIC) {
        throw std::runtime_error("the file is no image for this kind of process");
    }
}

template <class T>
const T* Image::At(DWORD offset) const {
    if (offset > bytes_.size() || bytes_.size() - offset < sizeof(T)) {
        throw std::runtime_error("a place lies beyond the end of the file");
    }
    return reinterpret_cast<const T*>(bytes_.data() + offset);
}

template <class T>
const T* Image::AtAddress(DWORD address) const {
    const IMAGE_SECTION_HEADER* section = SectionHeaders();
    for (WORD i = 0; i < File().NumberOfSections; ++i, ++section) {
        if (address >= section->VirtualAddress &&
            address - section->VirtualAddress < section->SizeOfRawData) {
            return At<T>(address - section->VirtualAddress + section->PointerToRawData);
        }
    }
    throw std::runtime_error("an address lies in no section");
}

const IMAGE_NT_HEADERS& Image::Headers() const {
    return *At<IMAGE_NT_HEADERS>(static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
}

const IMAGE_SECTION_HEADER* Image::SectionHeaders() const {
    const auto start = static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew) +
                       static_cast<DWORD>(offsetof(IMAGE_NT_HEADERS, OptionalHeader)) +
                       File().SizeOfOptionalHeader;
    return At<IMAGE_SECTION_HEADER>(start);
}

std::vector<Image::Section> Image::Sections() const {
    std::vector<Section> sections;
    const IMAGE_SECTION_HEADER* section = SectionHeaders();
    for (WORD i = 0; i < File().NumberOfSections; ++i, ++section) {
        const auto* name = reinterpret_cast<const char*>(section->Name);
        sections.push_back({std::string(name, strnlen(name, sizeof section->Name)), section->Characteristics,
                            section->SizeOfRawData});
    }
    return sections;
}

std::vector<std::string> Image::Exports() const {
    const auto& exports = *AtAddress<IMAGE_EXPORT_DIRECTORY>(Directory(IMAGE_DIRECTORY_ENTRY_EXPORT));
    std::vector<std::string> names;
    for (DWORD i = 0; i < exports.NumberOfNames; ++i) {
        const auto place = static_cast<DWORD>(i * sizeof(DWORD));
        names.emplace_back(AtAddress<char>(*AtAddress<DWORD>(exports.AddressOfNames + place)));
    }
    return names;
}

DWORD Image::ExportCount() const {
    return AtAddress<IMAGE_EXPORT_DIRECTORY>(Directory(IMAGE_DIRECTORY_ENTRY_EXPORT))->NumberOfFunctions;
}

std::map<std::string, std::set<std::string>> Image::Imports() const {
    std::map<std::string, std::set<std::string>> imports;
    DWORD place = Directory(IMAGE_DIRECTORY_ENTRY_IMPORT);
    for (;; place += sizeof(IMAGE_IMPORT_DESCRIPTOR)) {
        const auto& library = *AtAddress<IMAGE_IMPORT_DESCRIPTOR>(place);
        if (library.Name == 0) {
            return imports;
        }
        auto& functions = imports[AtAddress<char>(library.Name)];
        for (DWORD thunk = library.OriginalFirstThunk;; thunk += sizeof(IMAGE_THUNK_DATA)) {
            const ULONG_PTR entry = AtAddress<IMAGE_THUNK_DATA>(thunk)->u1.Ordinal;
            if (entry == 0) {
                break;
            }
            functions.insert(
                (entry & IMAGE_ORDINAL_FLAG) != 0
                    ? std::to_string(IMAGE_ORDINAL(entry))
                    : std::string(AtAddress<IMAGE_IMPORT_BY_NAME>(static_cast<DWORD>(entry))->Name));
        }
    }
}

} // namespace package
