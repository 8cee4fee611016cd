#include "bench/TextFile.h"

#include "bench/Text.h"
#include "check/Encoding.h"
#include "check/Findings.h"
#include "check/XmlTree.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

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

/// "line 3, column 7: reason" of the first error; empty when there is none.
std::string FirstError(check::Findings findings, std::string_view text) {
    for (const check::Finding& finding : std::move(findings).Place(text)) {
        if (finding.Level() == check::Severity::Error) {
            return "line " + std::to_string(finding.line) + ", column " + std::to_string(finding.column) +
                   ": " + finding.message +
                   (finding.expected.empty() ? "" : "; expected: " + finding.expected) +
                   (finding.suggestion.empty() ? "" : "; did you mean " + finding.suggestion + "?");
        }
    }
    return "";
}

/// A text that is no longer in the encoding that its declaration names: some parsers
/// would read it in that one all the same. Blanks keep every column in its place.
void BlankEncoding(std::wstring& text) {
    constexpr std::wstring_view kEncoding = L"encoding";
    const std::size_t end = text.starts_with(L"<?xml") ? text.find(L"?>") : std::wstring::npos;
    const std::size_t begin = text.substr(0, end == std::wstring::npos ? 0 : end).find(kEncoding);
    if (begin == std::wstring::npos) {
        return;
    }
    const std::size_t quote = text.find_first_of(L"\"'", begin);
    const std::size_t close = quote < end ? text.find(text[quote], quote + 1) : std::wstring::npos;
    if (close < end && !SameKey(text.substr(quote + 1, close - quote - 1), L"UTF-8")) {
        std::fill(text.begin() + static_cast<std::ptrdiff_t>(begin),
                  text.begin() + static_cast<std::ptrdiff_t>(close) + 1, L' ');
    }
}

} // namespace

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

std::wstring TextOfDocument(std::string bytes, const std::wstring& path) {
    check::Findings findings;
    const std::string text = check::Decode(std::move(bytes), findings);
    const std::string error = FirstError(std::move(findings), text);
    if (!error.empty()) {
        throw BenchError(CodeOf(ERROR_NO_UNICODE_TRANSLATION), Utf8(path) + ", " + error);
    }
    std::wstring wide = Wide(text);
    BlankEncoding(wide);
    return wide;
}

std::wstring ReadTextFile(const std::wstring& path) {
    return TextOfDocument(ReadBytes(path), path);
}

std::string WhyNoXml(std::string bytes) {
    check::Findings findings;
    std::string text = check::Decode(std::move(bytes), findings);
    const check::XmlTree tree(std::move(text), findings);
    return FirstError(std::move(findings), tree.Text());
}

} // namespace bench
