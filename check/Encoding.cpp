#include "check/Encoding.h"

#include "check/CodePages.h"
#include "check/Findings.h"
#include "check/Utf8.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

namespace check {

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr std::string_view kCutMessage = "the file ends in the middle of a character";

/// What is wrong at one place. Of a file that is no text at all words are made only for what is listed.
class Faults {
  public:
    explicit Faults(Findings& findings) : findings_(findings) {}

    template <class F>
    void Invalid(std::size_t at, F&& message, const char* expected) {
        const bool isListed = count_++ < Findings::kMost;
        findings_.Add(RuleId::EncodingInvalid, {at, 1}, isListed ? message() : std::string(),
                      isListed ? expected : "");
    }

  private:
    Findings& findings_;
    std::size_t count_ = 0;
};

std::string Hex(unsigned value) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (unsigned shift = value > 0xFF ? 16 : 8; shift > 0;) {
        shift -= 4;
        text += kDigits[value >> shift & 0xFU];
    }
    return "0x" + text;
}

/// Length of the UTF-8 sequence at a position; 0 when there is none.
std::size_t SequenceAt(std::string_view bytes, std::size_t at) {
    const auto byte = [&](std::size_t i) {
        return at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0U;
    };
    const unsigned first = byte(0);
    const auto follows = [&](std::size_t i) { return (byte(i) & 0xC0U) == 0x80U; };
    if (first < 0x80) {
        return 1;
    }
    if (first >= 0xC2 && first < 0xE0) {
        return follows(1) ? 2 : 0;
    }
    if (first >= 0xE0 && first < 0xF0) {
        const bool isTooShort = first == 0xE0 && byte(1) < 0xA0; // a shorter sequence says the same
        const bool isSurrogate = first == 0xED && byte(1) >= 0xA0;
        return follows(1) && follows(2) && !isTooShort && !isSurrogate ? 3 : 0;
    }
    if (first >= 0xF0 && first < 0xF5) {
        const bool isInRange = (first != 0xF0 || byte(1) >= 0x90) && (first != 0xF4 || byte(1) < 0x90);
        return follows(1) && follows(2) && follows(3) && isInRange ? 4 : 0;
    }
    return 0;
}

std::string FromUtf8(std::string bytes, Findings& findings) {
    std::size_t good = 0;
    while (good < bytes.size()) {
        const std::size_t length = SequenceAt(bytes, good);
        if (length == 0) {
            break;
        }
        good += length;
    }
    if (good == bytes.size()) {
        return bytes;
    }
    Faults faults(findings);
    std::string text = bytes.substr(0, good);
    for (std::size_t at = good; at < bytes.size();) {
        const std::size_t length = SequenceAt(bytes, at);
        if (length > 0) {
            text.append(bytes, at, length);
            at += length;
            continue;
        }
        const auto byte = static_cast<unsigned char>(bytes[at]);
        const bool isCut =
            byte >= 0xC2 && bytes.size() - at < 4 &&
            std::all_of(bytes.begin() + static_cast<std::ptrdiff_t>(at) + 1, bytes.end(),
                        [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; });
        faults.Invalid(
            text.size(),
            [&] {
                return isCut ? std::string(kCutMessage)
                             : "the byte " + Hex(byte) + " is no character of UTF-8";
            },
            isCut ? "" : "a file in UTF-8, or a declaration that names its encoding");
        AppendCharacter(text, kReplacement);
        at = isCut ? bytes.size() : at + 1;
    }
    return text;
}

std::string FromUtf16(std::string_view bytes, bool isBigEndian, Findings& findings) {
    Faults faults(findings);
    const auto unit = [&](std::size_t at) -> char32_t {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        return isBigEndian ? first * 256U + second : second * 256U + first;
    };
    const std::size_t end = bytes.size() / 2 * 2;
    std::string text;
    text.reserve(bytes.size() / 2 + bytes.size() / 8);
    for (std::size_t at = 0; at < end; at += 2) {
        char32_t c = unit(at);
        if (c >= 0xD800 && c < 0xE000) {
            const char32_t low = c < 0xDC00 && at + 2 < end ? unit(at + 2) : 0;
            if (low >= 0xDC00 && low < 0xE000) {
                c = 0x10000 + ((c - 0xD800) << 10U) + (low - 0xDC00);
                at += 2;
            } else {
                faults.Invalid(
                    text.size(),
                    [&] { return "half of a character: " + Hex(static_cast<unsigned>(c)) + " alone"; },
                    "a pair of code units");
                c = kReplacement;
            }
        }
        AppendCharacter(text, c);
    }
    if (end != bytes.size()) {
        faults.Invalid(
            text.size(), [] { return std::string(kCutMessage); }, "");
        AppendCharacter(text, kReplacement);
    }
    return text;
}

std::string FromCodePage(std::string_view bytes, const CodePage& page, Findings& findings) {
    Faults faults(findings);
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        const char32_t c = code < 0x80 ? code : page.upper[code - 0x80U];
        if (c == 0 && code >= 0x80) {
            faults.Invalid(
                text.size(),
                [&] { return "the byte " + Hex(code) + " is no character of " + std::string(page.name); },
                "");
            AppendCharacter(text, kReplacement);
        } else {
            AppendCharacter(text, c);
        }
    }
    return text;
}

std::string FromUtf32(std::string_view bytes, bool isBigEndian, Findings& findings) {
    constexpr std::size_t kSize = 4;
    constexpr char32_t kLast = 0x10FFFF;
    findings.Add(RuleId::EncodingUnknown, {0, 0}, "the file is in UTF-32", "UTF-8 or UTF-16");
    Faults faults(findings);
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += kSize) {
        char32_t c = 0;
        for (std::size_t i = 0; i < kSize && at + i < bytes.size(); ++i) {
            const char32_t byte = static_cast<unsigned char>(bytes[at + i]);
            c |= byte << 8U * (isBigEndian ? kSize - 1 - i : i);
        }
        const bool isCut = bytes.size() - at < kSize;
        if (isCut || c > kLast || (c >= 0xD800 && c < 0xE000)) {
            faults.Invalid(
                text.size(),
                [&] { return std::string(isCut ? kCutMessage : "four bytes are no character of UTF-32"); },
                "");
            c = kReplacement;
        }
        AppendCharacter(text, c);
    }
    return text;
}

/// The encoding that the XML declaration names, as a piece of the text; empty
/// when it names none.
Span DeclaredEncoding(std::string_view text) {
    constexpr std::size_t kLongest = 256;
    const std::string_view begin = text.substr(0, kLongest);
    if (!begin.starts_with("<?xml")) {
        return {};
    }
    const std::string_view declaration = begin.substr(0, begin.find("?>"));
    std::size_t at = declaration.find("encoding");
    if (at == std::string_view::npos) {
        return {};
    }
    at = declaration.find_first_of("\"'", at);
    if (at == std::string_view::npos) {
        return {};
    }
    const std::size_t end = declaration.find(declaration[at], at + 1);
    return end == std::string_view::npos ? Span{} : Span{at + 1, end - at - 1};
}

void ReportMismatch(std::string_view text, Span declared, std::string_view actual, Findings& findings) {
    findings.Add(RuleId::EncodingMismatch, declared,
                 "the declaration names " + Quoted(text.substr(declared.at, declared.size)) +
                     ", but the file is in " + std::string(actual),
                 Quoted(actual), std::string(actual));
}

std::string Utf16Text(std::string_view bytes, bool isBigEndian, Findings& findings) {
    std::string text = FromUtf16(bytes, isBigEndian, findings);
    const Span declared = DeclaredEncoding(text);
    if (declared.size > 0 && !Upper(text.substr(declared.at, declared.size)).starts_with(kUtf16)) {
        ReportMismatch(text, declared, kUtf16, findings);
    }
    return text;
}

/// Without a mark: the declaration says which encoding it is.
std::string DeclaredText(std::string bytes, Findings& findings) {
    const Span declared = DeclaredEncoding(bytes);
    const std::string name = bytes.substr(declared.at, declared.size);
    if (name.empty() || EqualKeyword(name, kUtf8)) {
        return FromUtf8(std::move(bytes), findings);
    }
    std::string upper = Upper(name);
    if (const std::string standard = StandardName(upper); !standard.empty()) {
        ReportUnknownEncoding(name, declared, findings);
        upper = standard;
    }
    if (upper == kUtf8) {
        return FromUtf8(std::move(bytes), findings);
    }
    if (const CodePage* const page = FindCodePage(upper)) {
        return FromCodePage(bytes, *page, findings);
    }
    if (upper == kAscii) {
        Faults faults(findings);
        for (std::size_t at = 0; at < bytes.size(); ++at) {
            if (static_cast<unsigned char>(bytes[at]) >= 0x80) {
                faults.Invalid(
                    at, [] { return std::string("a byte past 0x7F is no character of US-ASCII"); }, "UTF-8");
                bytes[at] = '?';
            }
        }
        return bytes;
    }
    if (upper.starts_with(kUtf16) || upper.starts_with("UTF-32")) {
        ReportMismatch(bytes, declared, kUtf8, findings);
    } else {
        ReportUnknownEncoding(name, declared, findings);
    }
    return FromUtf8(std::move(bytes), findings);
}

} // namespace

void CheckDeclaredEncoding(const std::string& text, Findings& findings) {
    const Span declared = DeclaredEncoding(text);
    const std::string name = Upper(std::string_view(text).substr(declared.at, declared.size));
    const bool isKnown = name.empty() || name == kUtf8 || name == kAscii || name.starts_with(kUtf16) ||
                         FindCodePage(name) != nullptr;
    if (!isKnown) {
        ReportUnknownEncoding(name, declared, findings);
    }
}

void CheckCommonEncoding(std::string_view text, Findings& findings) {
    const Span declared = DeclaredEncoding(text);
    const std::string_view name = text.substr(declared.at, declared.size);
    const CodePage* const page = FindCodePage(Upper(name));
    if (page != nullptr && !page->isCommon) {
        findings.Add(RuleId::EncodingUnknown, declared,
                     "not every parser that loads a definition knows the encoding " + Quoted(name),
                     kCommonEncodings, "");
    }
}

std::string Decode(std::string bytes, Findings& findings) {
    using namespace std::string_view_literals;
    const std::string_view view = bytes;
    if (view.starts_with("\xEF\xBB\xBF")) {
        bytes.erase(0, 3);
        const Span declared = DeclaredEncoding(bytes);
        if (declared.size > 0 &&
            !EqualKeyword(std::string_view(bytes).substr(declared.at, declared.size), kUtf8)) {
            ReportMismatch(bytes, declared, kUtf8, findings);
        }
        return FromUtf8(std::move(bytes), findings);
    }
    // Before UTF-16, whose mark the first of these begins with; a zero is no character of XML.
    if (view.starts_with("\xFF\xFE\0\0"sv)) {
        return FromUtf32(view.substr(4), false, findings);
    }
    if (view.starts_with("\0\0\xFE\xFF"sv)) {
        return FromUtf32(view.substr(4), true, findings);
    }
    if (view.starts_with("\xFF\xFE"sv)) {
        return Utf16Text(view.substr(2), false, findings);
    }
    if (view.starts_with("\xFE\xFF"sv)) {
        return Utf16Text(view.substr(2), true, findings);
    }
    // Without a mark the declaration's first characters tell it.
    if (view.starts_with("<\0?\0"sv) || view.starts_with("\0<\0?"sv)) {
        return Utf16Text(view, view.front() == '\0', findings);
    }
    if (view.starts_with("<\0"sv) || view.starts_with("\0<"sv)) {
        std::string text = FromUtf16(view, view.front() == '\0', findings);
        findings.Add(RuleId::EncodingMismatch, {0, 1},
                     "UTF-16 without a byte order mark and without a declaration", "a byte order mark", "");
        return text;
    }
    return DeclaredText(std::move(bytes), findings);
}

} // namespace check
