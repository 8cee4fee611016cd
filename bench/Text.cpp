#include "bench/Text.h"

#include <cstddef>
#include <iomanip>
#include <ios>
#include <sstream>
#include <string>
#include <string_view>

namespace bench {

namespace {

int Size(std::size_t size) {
    return static_cast<int>(size);
}

} // namespace

std::string Utf8(std::wstring_view text) {
    const int length =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), Size(text.size()), nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), Size(text.size()), result.data(), length, nullptr, nullptr);
    return result;
}

std::wstring Wide(std::string_view text) {
    const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), Size(text.size()), nullptr, 0);
    std::wstring result(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), Size(text.size()), result.data(), length);
    return result;
}

std::string Hex(HRESULT code) {
    std::ostringstream text;
    text << "0x" << std::hex << std::uppercase << std::setw(8) << std::setfill('0')
         << static_cast<unsigned long>(code);
    return text.str();
}

std::string Count(std::size_t number, const std::string& noun) {
    return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

bool SameKey(const std::wstring& left, const std::wstring& right) {
    return CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_EQUAL;
}

bool IsFile(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::wstring FullPath(const std::wstring& path) {
    std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return full;
}

namespace {

std::wstring ProgramPath() {
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = 0;
    while ((length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()))) >=
           path.size()) {
        path.resize(path.size() * 2);
    }
    path.resize(length);
    return path;
}

} // namespace

std::wstring ProgramFolder() {
    const std::wstring path = ProgramPath();
    return path.substr(0, path.find_last_of(L'\\') + 1);
}

std::string ProgramName() {
    const std::wstring path = ProgramPath();
    return Utf8(path.substr(path.find_last_of(L'\\') + 1));
}

void ThrowFileError(const std::wstring& path, const char* what, DWORD error) {
    wchar_t reason[256] = {};
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                                  0, reason, 256, nullptr);
    while (length > 0 && reason[length - 1] <= L' ') {
        --length;
    }
    throw BenchError(CodeOf(error), Utf8(path) + " " + what + ": " + Utf8(std::wstring_view(reason, length)));
}

} // namespace bench
