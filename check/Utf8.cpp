#include "check/Utf8.h"

#include "core/Case.h"
#include "core/Trimmed.h"

#include <algorithm>

namespace check {

namespace {

constexpr char32_t kReplacement = 0xFFFD;
/// How much of a text a message shows.
constexpr std::size_t kShown = 60;

unsigned Byte(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]);
}

bool IsFollower(std::string_view text, std::size_t at) {
    return at < text.size() && (Byte(text, at) & 0xC0U) == 0x80U;
}

char32_t Folded(char32_t c) {
    if (c < 0x80) {
        return static_cast<char32_t>(UpperLetter(static_cast<char>(c)));
    }
    return c < 0x10000 ? static_cast<char32_t>(tam::UpperCase(static_cast<wchar_t>(c))) : c;
}

char32_t Printed(char32_t c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0) ? U' ' : c;
}

} // namespace

char32_t NextCharacter(std::string_view text, std::size_t& at) {
    const unsigned first = Byte(text, at++);
    if (first < 0x80) {
        return first;
    }
    const unsigned followers = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC2 ? 1U : 0U;
    char32_t c = first & (0x3FU >> followers);
    for (unsigned i = 0; i < followers; ++i) {
        if (!IsFollower(text, at + i)) {
            return kReplacement;
        }
        c = c << 6U | (Byte(text, at + i) & 0x3FU);
    }
    at += followers;
    return followers == 0 ? kReplacement : c;
}

void AppendCharacter(std::string& text, char32_t c) {
    if (c < 0x80) {
        text += static_cast<char>(c);
    } else if (c < 0x800) {
        text += static_cast<char>(0xC0U | c >> 6U);
        text += static_cast<char>(0x80U | (c & 0x3FU));
    } else if (c < 0x10000) {
        text += static_cast<char>(0xE0U | c >> 12U);
        text += static_cast<char>(0x80U | (c >> 6U & 0x3FU));
        text += static_cast<char>(0x80U | (c & 0x3FU));
    } else {
        text += static_cast<char>(0xF0U | c >> 18U);
        text += static_cast<char>(0x80U | (c >> 12U & 0x3FU));
        text += static_cast<char>(0x80U | (c >> 6U & 0x3FU));
        text += static_cast<char>(0x80U | (c & 0x3FU));
    }
}

std::size_t CountCharacters(std::string_view text) {
    std::size_t count = 0;
    for (const char c : text) {
        count += (static_cast<unsigned char>(c) & 0xC0U) != 0x80U ? 1U : 0U;
    }
    return count;
}

std::size_t CountCodeUnits(std::string_view text) {
    std::size_t count = CountCharacters(text);
    for (const char c : text) {
        count += static_cast<unsigned char>(c) >= 0xF0U ? 1U : 0U; // a pair
    }
    return count;
}

bool IsAllBlank(std::string_view text) {
    return std::all_of(text.begin(), text.end(), IsBlank);
}

std::string_view Trim(std::string_view text) {
    const std::string_view trimmed = tam::Trimmed(text, kBlanks);
    return trimmed.empty() ? text.substr(text.size()) : trimmed; // where it stands is asked too
}

std::string Upper(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), UpperLetter);
    return upper;
}

bool EqualKeyword(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return UpperLetter(x) == UpperLetter(y);
           });
}

bool EqualName(std::string_view a, std::string_view b) {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() && j < b.size()) {
        if (Folded(NextCharacter(a, i)) != Folded(NextCharacter(b, j))) {
            return false;
        }
    }
    return i == a.size() && j == b.size();
}

std::uint64_t HashOfName(std::string_view name) {
    std::uint64_t hash = 14695981039346656037U;
    for (std::size_t at = 0; at < name.size();) {
        hash = (hash ^ Folded(NextCharacter(name, at))) * 1099511628211U;
    }
    return hash;
}

std::string Clean(std::string_view text) {
    std::string clean;
    for (std::size_t at = 0; at < text.size();) {
        AppendCharacter(clean, Printed(NextCharacter(text, at)));
    }
    return clean;
}

std::string Quoted(std::string_view text) {
    std::string shown = "\"";
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++count) {
        if (count == kShown) {
            shown += "...";
            break;
        }
        const char32_t c = NextCharacter(text, at);
        AppendCharacter(shown, Printed(c));
    }
    return shown + "\"";
}

std::wstring Wide(std::string_view text) {
    std::wstring wide;
    for (std::size_t at = 0; at < text.size();) {
        const char32_t c = NextCharacter(text, at);
        if (sizeof(wchar_t) == sizeof(char32_t) || c < 0x10000) {
            wide += static_cast<wchar_t>(c);
        } else {
            wide += static_cast<wchar_t>(0xD800U + ((c - 0x10000) >> 10U));
            wide += static_cast<wchar_t>(0xDC00U + ((c - 0x10000) & 0x3FFU));
        }
    }
    return wide;
}

} // namespace check
