#include "check/XmlLexer.h"

#include "check/Nearest.h"
#include "check/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <utility>

namespace check {

namespace {

constexpr std::size_t kNone = std::string_view::npos;
/// What the parsers of the DOM take; more is refused.
constexpr std::size_t kLongestName = 50000;
constexpr std::size_t kLongestText = 9'990'000;

constexpr std::pair<std::string_view, char> kEntities[] = {
    {"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}};

bool IsNameStartByte(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == ':' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool IsAllowed(char32_t c) {
    return (c >= 0x20 || c == '\t' || c == '\n' || c == '\r') && c != 0xFFFE && c != 0xFFFF &&
           !(c >= 0xD800 && c < 0xE000) && c <= 0x10FFFF;
}

/// The character of "#48" or "#x30"; 0 when it is none.
char32_t ReferredCharacter(std::string_view reference) {
    const bool isHex = reference.starts_with("#x");
    const std::string_view digits = reference.substr(isHex ? 2 : 1);
    const std::uint32_t base = isHex ? 16 : 10;
    std::uint32_t value = 0;
    for (const char c : digits) {
        std::uint32_t digit = 16;
        if (c >= '0' && c <= '9') {
            digit = static_cast<std::uint32_t>(c - '0');
        } else if (c >= 'a' && c <= 'f') {
            digit = static_cast<std::uint32_t>(c - 'a') + 10;
        } else if (c >= 'A' && c <= 'F') {
            digit = static_cast<std::uint32_t>(c - 'A') + 10;
        }
        if (digit >= base || value > 0x10FFFF) {
            return 0;
        }
        value = value * base + digit;
    }
    return !digits.empty() && IsAllowed(value) ? char32_t{value} : char32_t{0};
}

/// What a reference "&...;" stands for; 0 when nothing.
char32_t Referred(std::string_view reference) {
    if (reference.starts_with('#')) {
        return ReferredCharacter(reference);
    }
    const auto* const known = std::find_if(std::begin(kEntities), std::end(kEntities),
                                           [&](const auto& entity) { return entity.first == reference; });
    return known != std::end(kEntities) ? static_cast<unsigned char>(known->second) : char32_t{0};
}

/// The name between "&" and ";" at a position; empty when no reference begins there.
std::string_view ReferenceAt(std::string_view raw, std::size_t ampersand) {
    constexpr std::size_t kLongest = 32;
    const std::string_view rest = raw.substr(ampersand + 1, kLongest);
    const std::size_t end = rest.find_first_of("; \t\r\n&<");
    return end != kNone && rest[end] == ';' ? rest.substr(0, end) : std::string_view();
}

} // namespace

bool IsNameStart(char32_t c) noexcept {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == ':' ||
           (c >= 0xC0 && c <= 0x2FF && c != 0xD7 && c != 0xF7) || (c >= 0x370 && c <= 0x1FFF && c != 0x37E) ||
           c == 0x200C || c == 0x200D || (c >= 0x2070 && c <= 0x218F) || (c >= 0x2C00 && c <= 0x2FEF) ||
           (c >= 0x3001 && c <= 0xD7FF) || (c >= 0xF900 && c <= 0xFDCF) || (c >= 0xFDF0 && c <= 0xFFFC);
}

bool IsNamePart(char32_t c) noexcept {
    return IsNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == 0xB7 ||
           (c >= 0x300 && c <= 0x36F) || c == 0x203F || c == 0x2040;
}

std::string Decoded(std::string_view raw, bool isAttribute) {
    std::string text;
    text.reserve(raw.size());
    for (std::size_t at = 0; at < raw.size(); ++at) {
        const char c = raw[at];
        if (c == '&') {
            const std::string_view reference = ReferenceAt(raw, at);
            const char32_t meant = reference.empty() ? char32_t{0} : Referred(reference);
            if (meant != 0) {
                AppendCharacter(text, meant);
                at += reference.size() + 1;
                continue;
            }
            text += c;
        } else if (c == '\r') {
            text += isAttribute ? ' ' : '\n';
            at += raw.substr(at + 1).starts_with('\n') ? 1U : 0U;
        } else {
            text += isAttribute && IsBlank(c) ? ' ' : c;
        }
    }
    return text;
}

void XmlLexer::Report(RuleId rule, Span span, std::string message, std::string expected,
                      std::string suggestion) {
    if (findings_ != nullptr) {
        findings_->Add(rule, span, std::move(message), std::move(expected), std::move(suggestion));
    }
}

bool XmlLexer::IsMarkup() const noexcept {
    if (at_ + 1 >= text_.size() || text_[at_] != '<') {
        return false;
    }
    const char next = text_[at_ + 1];
    return IsNameStartByte(next) || next == '/' || next == '!' || next == '?';
}

void XmlLexer::SkipBlanks() {
    while (at_ < text_.size() && IsBlank(text_[at_])) {
        ++at_;
    }
}

Span XmlLexer::Name() {
    const std::size_t begin = at_;
    while (at_ < text_.size()) {
        std::size_t next = at_;
        const char c = text_[at_];
        // Most names are ASCII.
        const bool isPart = static_cast<unsigned char>(c) < 0x80
                                ? IsNamePart(static_cast<char32_t>(c)) && (next = at_ + 1) != 0
                                : IsNamePart(NextCharacter(text_, next));
        if (!isPart) {
            break;
        }
        at_ = next;
    }
    const Span name{begin, at_ - begin};
    if (findings_ != nullptr && name.size > 0) {
        std::size_t first = begin;
        if (!IsNameStart(NextCharacter(text_, first))) {
            Report(RuleId::XmlTag, {begin, first - begin}, "a name must begin with a letter or \"_\"");
        }
        if (name.size > kLongestName) {
            Report(RuleId::XmlTooLong, {begin, 1}, "a name of " + std::to_string(name.size) + " bytes",
                   "at most " + std::to_string(kLongestName));
        }
    }
    return name;
}

void XmlLexer::CheckLength(Span span) {
    if (span.size > kLongestText) {
        Report(RuleId::XmlTooLong, {span.at, 1}, "a text of " + std::to_string(span.size) + " bytes",
               "at most " + std::to_string(kLongestText));
    }
}

void XmlLexer::CheckCharacters(Span span) {
    if (findings_ == nullptr) {
        return;
    }
    CheckLength(span);
    const auto byteAt = [&](std::size_t at) {
        return at < text_.size() ? static_cast<unsigned char>(text_[at]) : static_cast<unsigned char>(0);
    };
    for (std::size_t at = span.at; at < span.at + span.size; ++at) {
        const unsigned char byte = byteAt(at);
        bool isBad = (byte < 0x20 && !IsBlank(text_[at])) ||
                     (byte == 0xEF && byteAt(at + 1) == 0xBF && byteAt(at + 2) >= 0xBE);
        // Halves of a pair, each written as a character: the two are one.
        if (byte == 0xED && byteAt(at + 1) >= 0xA0) {
            const bool isPair = byteAt(at + 1) < 0xB0 && byteAt(at + 3) == 0xED && byteAt(at + 4) >= 0xB0;
            at += isPair ? 5U : 0U;
            isBad = !isPair;
        }
        if (isBad) {
            Report(RuleId::XmlCharacter, {at, 1}, "a character that XML does not allow");
        }
    }
}

void XmlLexer::CheckReferences(Span span) {
    if (findings_ == nullptr) {
        return;
    }
    const std::string_view raw = text_.substr(span.at, span.size);
    for (std::size_t at = raw.find('&'); at != kNone; at = raw.find('&', at + 1)) {
        const std::string_view reference = ReferenceAt(raw, at);
        if (reference.empty()) {
            Report(RuleId::XmlReference, {span.at + at, 1}, "\"&\" stands alone", "\"&amp;\"", "&amp;");
        } else if (Referred(reference) == 0) {
            std::array<std::string_view, std::size(kEntities)> known{};
            std::transform(std::begin(kEntities), std::end(kEntities), known.begin(),
                           [](const auto& entity) { return entity.first; });
            const std::string_view near = reference.starts_with('#') ? "" : Nearest(reference, known);
            Report(RuleId::XmlReference, {span.at + at, reference.size() + 2},
                   Quoted("&" + std::string(reference) + ";") + " stands for nothing",
                   "&lt; &gt; &amp; &quot; &apos; or the number of a character",
                   near.empty() ? "" : "&" + std::string(near) + ";");
        }
    }
}

void XmlLexer::DeclarationPart(std::string_view name, std::string_view value, Span span) {
    if (name == "version" && value != "1.0") {
        Report(RuleId::XmlDeclaration, span, "version " + Quoted(value), "\"1.0\"", "1.0");
    } else if (name == "standalone" && value != "yes" && value != "no") {
        Report(RuleId::XmlDeclaration, span, "standalone is " + Quoted(value), "\"yes\" or \"no\"");
    }
}

void XmlLexer::SkipDeclaration() {
    if (!Looks("<?xml") || at_ + 5 >= text_.size() ||
        IsNamePart(static_cast<unsigned char>(text_[at_ + 5]))) {
        return;
    }
    constexpr std::string_view kParts[] = {"version", "encoding", "standalone"};
    const std::size_t begin = at_;
    at_ += 5;
    std::size_t part = 0;
    for (;;) {
        SkipBlanks();
        if (Looks("?>")) {
            at_ += 2;
            break;
        }
        const Span name = Name();
        SkipBlanks();
        const bool hasEqual = name.size > 0 && Looks("=");
        at_ += hasEqual ? 1U : 0U;
        SkipBlanks();
        const char mark = hasEqual && !IsAtEnd() ? text_[at_] : '\0';
        const std::size_t close = mark == '"' || mark == '\'' ? text_.find(mark, at_ + 1) : kNone;
        const std::string_view word = text_.substr(name.at, name.size);
        const auto* const known = std::find(std::begin(kParts) + part, std::end(kParts), word);
        if (close == kNone || known == std::end(kParts) || (part == 0 && word != "version")) {
            Report(RuleId::XmlDeclaration,
                   {name.size > 0 ? name.at : at_, std::max<std::size_t>(name.size, 1)},
                   "the XML declaration is not well-formed", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
            const std::size_t end = text_.find("?>", begin);
            at_ = end == kNone ? text_.size() : end + 2;
            return;
        }
        part = static_cast<std::size_t>(known - std::begin(kParts)) + 1;
        DeclarationPart(word, text_.substr(at_ + 1, close - at_ - 1), {at_ + 1, close - at_ - 1});
        at_ = close + 1;
    }
    if (part == 0) {
        Report(RuleId::XmlDeclaration, {begin, 5}, "the XML declaration names no version", "version=\"1.0\"");
    }
}

Span XmlLexer::Text() {
    const std::size_t begin = at_;
    while (!IsAtEnd() && !IsMarkup()) {
        if (Looks("<")) {
            Report(RuleId::XmlTag, {at_, 1}, "\"<\" begins no tag", "\"&lt;\" in a text", "&lt;");
            ++at_;
        }
        at_ = std::min(text_.find('<', at_), text_.size());
    }
    const Span span{begin, at_ - begin};
    if (findings_ != nullptr) {
        CheckCharacters(span);
        CheckReferences(span);
        const std::string_view raw = text_.substr(span.at, span.size);
        for (std::size_t at = raw.find("]]>"); at != kNone; at = raw.find("]]>", at + 1)) {
            Report(RuleId::XmlCData, {begin + at, 3}, "\"]]>\" in a text", "\"]]&gt;\"", "]]&gt;");
        }
    }
    return span;
}

Span XmlLexer::Comment() {
    const std::size_t begin = at_;
    const std::size_t end = text_.find("-->", begin + 4);
    const Span content{begin + 4, (end == kNone ? text_.size() : end) - begin - 4};
    if (findings_ != nullptr) {
        const std::string_view raw = text_.substr(content.at, content.size);
        const std::size_t dashes = raw.find("--");
        if (end == kNone) {
            Report(RuleId::XmlComment, {begin, 4}, "the comment does not end", "\"-->\"");
        } else if (dashes != kNone) {
            Report(RuleId::XmlComment, {content.at + dashes, 2}, "\"--\" inside a comment");
        } else if (raw.ends_with('-')) {
            Report(RuleId::XmlComment, {content.at + content.size - 1, 1}, "\"-\" at the end of a comment");
        }
        CheckCharacters(content);
    }
    at_ = end == kNone ? text_.size() : end + 3;
    return content;
}

Span XmlLexer::CData() {
    constexpr std::size_t kMark = 9;
    const std::size_t begin = at_;
    const std::size_t end = text_.find("]]>", begin + kMark);
    const Span content{begin + kMark, (end == kNone ? text_.size() : end) - begin - kMark};
    if (end == kNone) {
        Report(RuleId::XmlCData, {begin, kMark}, "the CDATA section does not end", "\"]]>\"");
    }
    CheckCharacters(content);
    at_ = end == kNone ? text_.size() : end + 3;
    return content;
}

Span XmlLexer::Instruction() {
    const std::size_t begin = at_;
    at_ += 2;
    const Span target = Name();
    const std::string_view name = text_.substr(target.at, target.size);
    if (target.size == 0) {
        Report(RuleId::XmlInstruction, {begin, 2}, "an instruction without a name");
    } else if (EqualKeyword(name, "xml")) {
        Report(RuleId::XmlDeclaration, {begin, target.size + 2},
               "the XML declaration stands at the very beginning or nowhere");
    } else if (name.find(':') != kNone) {
        Report(RuleId::XmlInstruction, target, "the name of an instruction has a colon");
    }
    const std::size_t end = text_.find("?>", at_);
    if (end == kNone) {
        Report(RuleId::XmlInstruction, {begin, 2}, "the instruction does not end", "\"?>\"");
    } else if (target.size > 0 && end > at_ && !IsBlank(text_[at_])) {
        Report(RuleId::XmlInstruction, {at_, 1}, "a blank is missing after the name of an instruction");
    }
    CheckCharacters({at_, (end == kNone ? text_.size() : end) - at_});
    at_ = end == kNone ? text_.size() : end + 2;
    return target;
}

void XmlLexer::Doctype() {
    Report(RuleId::XmlDoctype, {at_, 9}, "a document type", "a document without one");
    int depth = 0;
    const auto skip = [&](std::string_view end) {
        const std::size_t found = text_.find(end, at_);
        at_ = found == kNone ? text_.size() : found + end.size();
    };
    while (at_ < text_.size()) {
        if (Looks("<!--")) { // quotation marks begin nothing in there
            skip("-->");
            continue;
        }
        if (Looks("<?")) {
            skip("?>");
            continue;
        }
        const char c = text_[at_++];
        if (c == '"' || c == '\'') {
            const std::size_t close = text_.find(c, at_);
            at_ = close == kNone ? at_ : close + 1;
        }
        depth += c == '[' ? 1 : c == ']' ? -1 : 0;
        if (c == '>' && depth <= 0) {
            return;
        }
    }
}

void XmlLexer::UnknownMarkup() {
    Report(RuleId::XmlTag, {at_, 2}, "\"<!\" begins neither a comment nor a CDATA section", "\"<!--\"");
    const std::size_t end = text_.find('>', at_);
    at_ = end == kNone ? text_.size() : end + 1;
}

} // namespace check
