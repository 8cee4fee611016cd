// The files that the documents are made from.

#include "tests/fuzz/DocumentRounds.h"

#include "tests/Places.h"

#include <stdexcept>

namespace component_fuzz {

const std::wstring& CorpusFolder() {
    static const std::wstring folder =
        (tests::TopFolder() / L"tests" / L"fuzz" / L"corpus" / L"documents" / L"").make_preferred().native();
    return folder;
}

std::string ReadFile(const std::wstring& path) {
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        throw std::runtime_error("cannot be read: " + support::Narrow(path));
    }
    std::string bytes(GetFileSize(file, nullptr), '\0');
    DWORD read = 0;
    ::ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
    CloseHandle(file);
    bytes.resize(read);
    return bytes;
}

std::wstring FromUtf8(const std::string& bytes) {
    const int size = static_cast<int>(bytes.size());
    std::wstring text(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, text.data(), static_cast<int>(text.size()));
    return text;
}

} // namespace component_fuzz
