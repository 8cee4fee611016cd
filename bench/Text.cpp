#include "bench/Text.h"

#include <cstddef>
#include <iomanip>
#include <ios>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>

namespace bench {

namespace {

struct CloseFileHandle {
    using pointer = HANDLE;
    void operator()(HANDLE file) const noexcept { CloseHandle(file); }
};
using File = std::unique_ptr<HANDLE, CloseFileHandle>;

constexpr const char* kCannotRead = "cannot be read";

File Open(const std::wstring& path) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        ThrowFileError(path, kCannotRead, GetLastError());
    }
    return File(file);
}

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

std::wstring ProgramFolder() {
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = 0;
    while ((length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()))) >=
           path.size()) {
        path.resize(path.size() * 2);
    }
    path.resize(length);
    return path.substr(0, path.find_last_of(L'\\') + 1);
}

std::string ReadBytes(const std::wstring& path) {
    constexpr DWORD kPiece = 1U << 20U;
    File opened;
    if (path != kStandardInput) {
        opened = Open(path);
    }
    const HANDLE file = opened ? opened.get() : GetStdHandle(STD_INPUT_HANDLE);
    std::string bytes;
    for (DWORD read = kPiece; read > 0;) {
        const std::size_t before = bytes.size();
        bytes.resize(before + kPiece);
        // A pipe whose writer has ended is at its end.
        if (ReadFile(file, bytes.data() + before, kPiece, &read, nullptr) == FALSE) {
            const DWORD error = GetLastError();
            if (error != ERROR_BROKEN_PIPE) {
                ThrowFileError(path, kCannotRead, error);
            }
            read = 0;
        }
        bytes.resize(before + read);
    }
    return bytes;
}

std::wstring ReadTextFile(const std::wstring& path) {
    std::string bytes = ReadBytes(path);
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        bytes.erase(0, 3);
    }
    if (!bytes.empty() && MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), Size(bytes.size()),
                                              nullptr, 0) == 0) {
        throw BenchError(CodeOf(ERROR_NO_UNICODE_TRANSLATION), Utf8(path) + " is not in UTF-8");
    }
    return Wide(bytes);
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
