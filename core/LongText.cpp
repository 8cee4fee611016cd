#include "core/LongText.h"

#include <cstddef>

namespace tam {

namespace {

constexpr std::wstring_view kLineBreak = L"\r\n";
/// Some rows of a text box on a wide screen.
constexpr std::size_t kLongest = 500;

bool IsFirstOfPair(wchar_t c) noexcept {
    return c >= 0xD800 && c <= 0xDBFF;
}

/// How much of a long line stands before its first soft break.
std::size_t HeadOf(std::wstring_view line) noexcept {
    const std::size_t blank = line.find_last_of(L" \t", kLongest - 1);
    if (blank != std::wstring_view::npos) {
        return blank + 1;
    }
    return IsFirstOfPair(line[kLongest - 1]) ? kLongest - 1 : kLongest;
}

void AppendLine(std::wstring& text, std::wstring_view line) {
    while (line.size() > kLongest) {
        const std::size_t head = HeadOf(line);
        text.append(line.substr(0, head)).append(kSoftBreak);
        line.remove_prefix(head);
    }
    text.append(line);
}

} // namespace

std::wstring WithLineBreaks(std::wstring_view text) {
    std::wstring result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != L'\r' && text[at] != L'\n') {
            result += text[at] == L'\0' ? L' ' : text[at];
            continue;
        }
        result.append(kLineBreak);
        if (text.substr(at).starts_with(kLineBreak)) {
            ++at;
        }
    }
    return result;
}

std::wstring WithSoftBreaks(std::wstring_view text) {
    std::wstring result;
    result.reserve(text.size() + text.size() / kLongest * kSoftBreak.size());
    for (;;) {
        const std::size_t end = text.find(kLineBreak);
        AppendLine(result, text.substr(0, end));
        if (end == std::wstring_view::npos) {
            return result;
        }
        result.append(kLineBreak);
        text.remove_prefix(end + kLineBreak.size());
    }
}

std::wstring WithoutSoftBreaks(std::wstring_view text) {
    std::wstring result;
    result.reserve(text.size());
    for (;;) {
        const std::size_t end = text.find(kSoftBreak);
        result.append(text.substr(0, end));
        if (end == std::wstring_view::npos) {
            return result;
        }
        text.remove_prefix(end + kSoftBreak.size());
    }
}

} // namespace tam
