#include "core/Unattended.h"

#include <cstddef>

namespace tam {

namespace {

constexpr wchar_t kFirstPrintable = 0x20;

bool IsIn(wchar_t c, unsigned long first, unsigned long last) noexcept {
    const auto code =
        static_cast<unsigned long>(c); // NOLINT(bugprone-signed-char-misuse, cert-str34-c): a wide one
    return code >= first && code <= last;
}

bool IsHigh(wchar_t c) noexcept {
    return IsIn(c, 0xD800, 0xDBFF);
}

bool IsLow(wchar_t c) noexcept {
    return IsIn(c, 0xDC00, 0xDFFF);
}

void AppendEscape(std::wstring& to, wchar_t c) {
    constexpr std::wstring_view digits = L"0123456789abcdef";
    to += L"\\u";
    for (int shift = 12; shift >= 0; shift -= 4) {
        to += digits[(static_cast<unsigned long>(c) >> shift) & 0xFul];
    }
}

void AppendQuoted(std::wstring& to, std::wstring_view text) {
    to += L'"';
    for (std::size_t i = 0; i < text.size(); ++i) {
        const wchar_t c = text[i];
        if (c == L'"' || c == L'\\') {
            to += L'\\';
            to += c;
        } else if (IsHigh(c) && i + 1 < text.size() && IsLow(text[i + 1])) {
            to += c;
            to += text[++i];
        } else if (IsIn(c, 0, kFirstPrintable - 1) || IsHigh(c) || IsLow(c)) {
            AppendEscape(to, c);
        } else {
            to += c;
        }
    }
    to += L'"';
}

} // namespace

bool IsUnattendedBy(std::wstring_view value) noexcept {
    return !value.empty() && value != L"0";
}

std::wstring_view UnattendedFile(std::wstring_view value) noexcept {
    return IsUnattendedBy(value) && value != L"1" ? value : std::wstring_view();
}

std::wstring JsonLine(const Unshown& unshown, std::wstring_view time) {
    struct Member {
        std::wstring_view name;
        std::wstring_view value;
    };
    const Member members[] = {{L"time", time},
                              {L"kind", unshown.kind},
                              {L"title", unshown.title},
                              {L"text", unshown.text},
                              {L"label", unshown.label},
                              {L"place", unshown.place},
                              {L"source", unshown.source}};
    std::wstring line;
    for (const Member& member : members) {
        line += line.empty() ? L"{" : L", ";
        AppendQuoted(line, member.name);
        line += L": ";
        AppendQuoted(line, member.value);
    }
    line += L'}';
    return line;
}

} // namespace tam
