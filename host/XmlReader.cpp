#include "host/XmlReader.h"

#include "core/RunTimeError.h"
#include "host/ExportDocument.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <set>
#include <utility>

namespace orv {

namespace {

constexpr wchar_t kByteOrderMark = 0xFEFF;
constexpr std::uint32_t kLastCharacter = 0x10FFFF;

bool IsBlank(wchar_t c) noexcept {
    return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n';
}

bool IsNameStart(wchar_t c) noexcept {
    return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z') || c == L'_' || c == L':' ||
           (c >= 0xC0 && c < 0xFFFE);
}

bool IsNamePart(wchar_t c) noexcept {
    return IsNameStart(c) || (c >= L'0' && c <= L'9') || c == L'-' || c == L'.' || c == 0xB7;
}

/// Whether a document may hold the character; code units of pairs count as such.
bool IsAllowed(std::uint32_t c) noexcept {
    return (c >= 0x20 || IsBlank(static_cast<wchar_t>(c))) && c != 0xFFFE && c != 0xFFFF;
}

void AppendCharacter(std::wstring& out, std::uint32_t c) {
    if (c >= 0x10000) {
        out += static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
        out += static_cast<wchar_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
        out += static_cast<wchar_t>(c);
    }
}

/// The number of a character reference, "#48" or "#x30"; 0 when it is none.
std::uint32_t ReferredCharacter(std::wstring_view reference) noexcept {
    const bool hex = reference.starts_with(L"#x");
    const std::uint32_t base = hex ? 16 : 10;
    const std::wstring_view digits = reference.substr(hex ? 2 : 1);
    std::uint32_t value = 0;
    for (const wchar_t c : digits) {
        std::uint32_t digit = base;
        if (c >= L'0' && c <= L'9') {
            digit = static_cast<std::uint32_t>(c - L'0');
        } else if (c >= L'a' && c <= L'f') {
            digit = static_cast<std::uint32_t>(c - L'a') + 10;
        } else if (c >= L'A' && c <= L'F') {
            digit = static_cast<std::uint32_t>(c - L'A') + 10;
        }
        if (digit >= base || value > kLastCharacter) {
            return 0;
        }
        value = value * base + digit;
    }
    const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
    return value > kLastCharacter || surrogate || !IsAllowed(value) ? 0 : value;
}

} // namespace

XmlReader::XmlReader(std::wstring_view text) : text_(text) {
    Skip({&kByteOrderMark, 1});
    if (text_.substr(at_).starts_with(L"<?xml") && at_ + 5 < text_.size() && IsBlank(text_[at_ + 5])) {
        Until(L"?>", L"the XML declaration");
    }
}

void XmlReader::Fail(std::size_t offset, const std::wstring& reason) const {
    std::size_t line = 1;
    std::size_t begin = 0;
    for (std::size_t i = 0; i < offset; ++i) {
        const bool pair = text_[i] == L'\r' && i + 1 < text_.size() && text_[i + 1] == L'\n';
        if (text_[i] == L'\n' || (text_[i] == L'\r' && !pair)) {
            ++line;
            begin = i + 1;
        }
    }
    throw tam::RunTimeError(kNotAnExportDocument, {},
                            L"line " + std::to_wstring(line) + L", column " +
                                std::to_wstring(offset - begin + 1) + L": " + reason);
}

bool XmlReader::Skip(std::wstring_view mark) noexcept {
    const bool found = text_.substr(at_).starts_with(mark);
    at_ += found ? mark.size() : 0;
    return found;
}

bool XmlReader::SkipBlanks() noexcept {
    const std::size_t begin = at_;
    while (at_ < text_.size() && IsBlank(text_[at_])) {
        ++at_;
    }
    return at_ > begin;
}

std::wstring_view XmlReader::Until(std::wstring_view mark, const wchar_t* what) {
    const std::size_t begin = at_;
    const std::size_t end = text_.find(mark, begin);
    if (end == std::wstring_view::npos) {
        Fail(begin, std::wstring(what) + L" does not end");
    }
    while (at_ < end) {
        Character();
    }
    at_ = end + mark.size();
    return text_.substr(begin, end - begin);
}

/// Passes a comment or a processing instruction.
bool XmlReader::SkipMarkup() {
    const std::size_t begin = at_;
    if (Skip(L"<!--")) {
        const std::wstring_view comment = Until(L"-->", L"the comment");
        if (comment.find(L"--") != std::wstring_view::npos || comment.ends_with(L'-')) {
            Fail(begin, L"a comment must not hold \"--\"");
        }
        return true;
    }
    if (Skip(L"<?")) {
        if (ReadName() == L"xml") {
            Fail(begin, L"the XML declaration must stand at the very beginning");
        }
        Until(L"?>", L"the processing instruction");
        return true;
    }
    if (Skip(L"<!DOCTYPE")) {
        Fail(begin, L"a document type is not accepted");
    }
    return false;
}

/// The next character, which may stand in a document.
wchar_t XmlReader::Character() {
    if (at_ == text_.size()) {
        Fail(at_, L"the text ends too early");
    }
    if (!IsAllowed(static_cast<std::uint32_t>(text_[at_]))) {
        Fail(at_, L"a character that XML does not allow");
    }
    return text_[at_++];
}

std::wstring XmlReader::ReadName() {
    const std::size_t begin = at_;
    if (at_ == text_.size() || !IsNameStart(text_[at_])) {
        Fail(at_, L"a name is missing");
    }
    while (at_ < text_.size() && IsNamePart(text_[at_])) {
        ++at_;
    }
    return std::wstring(text_.substr(begin, at_ - begin));
}

/// After the "&" of a reference: appends what it stands for.
void XmlReader::ReadReference(std::wstring& out) {
    const std::size_t begin = at_ - 1;
    const std::wstring_view reference = Until(L";", L"the reference");
    constexpr std::pair<std::wstring_view, wchar_t> kNamed[] = {
        {L"lt", L'<'}, {L"gt", L'>'}, {L"amp", L'&'}, {L"quot", L'"'}, {L"apos", L'\''}};
    const auto* const named =
        std::ranges::find(kNamed, reference, &std::pair<std::wstring_view, wchar_t>::first);
    if (named != std::end(kNamed)) {
        out += named->second;
        return;
    }
    const std::uint32_t character = reference.starts_with(L'#') ? ReferredCharacter(reference) : 0;
    if (character == 0) {
        Fail(begin, L"a reference to nothing that is known");
    }
    AppendCharacter(out, character);
}

/// The value of an attribute from its opening quotation mark on.
std::wstring XmlReader::ReadValue() {
    const wchar_t mark = at_ < text_.size() ? text_[at_] : L'\0';
    if (mark != L'"' && mark != L'\'') {
        Fail(at_, L"the value of an attribute must stand in quotation marks");
    }
    ++at_;
    std::wstring value;
    for (wchar_t c = Character(); c != mark; c = Character()) {
        if (c == L'<') {
            Fail(at_ - 1, L"the value of an attribute must not hold \"<\"");
        }
        if (c == L'&') {
            ReadReference(value);
        } else if (c == L'\r' && Skip(L"\n")) {
            value += L' '; // one end of line, one blank
        } else {
            value += IsBlank(c) ? L' ' : c;
        }
    }
    return value;
}

void XmlReader::ReadAttributes() {
    attributes_.clear();
    std::set<std::wstring> names;
    while (SkipBlanks() && at_ < text_.size() && IsNameStart(text_[at_])) {
        XmlAttribute attribute;
        attribute.offset = at_;
        attribute.name = ReadName();
        SkipBlanks();
        if (!Skip(L"=")) {
            Fail(at_, L"\"=\" is missing");
        }
        SkipBlanks();
        attribute.value = ReadValue();
        if (!names.insert(attribute.name).second) {
            Fail(attribute.offset, L"attribute \"" + attribute.name + L"\" stands twice");
        }
        attributes_.push_back(std::move(attribute));
    }
}

/// After the "<" of an element.
XmlKind XmlReader::ReadElement() {
    name_ = ReadName();
    if (open_.empty() && std::exchange(hadRoot_, true)) {
        Fail(offset_, L"a document has one root element");
    }
    ReadAttributes();
    endDue_ = Skip(L"/");
    if (!Skip(L">")) {
        Fail(at_, L"\">\" is missing");
    }
    open_.push_back(name_);
    return XmlKind::Element;
}

/// After the "</" of an end, or after an element without content.
XmlKind XmlReader::ReadEndOfElement() {
    if (!std::exchange(endDue_, false)) {
        name_ = ReadName();
        SkipBlanks();
        if (open_.empty() || open_.back() != name_) {
            Fail(offset_, L"</" + name_ + L"> ends nothing that is open here");
        }
        if (!Skip(L">")) {
            Fail(at_, L"\">\" is missing");
        }
    }
    open_.pop_back();
    return XmlKind::EndOfElement;
}

/// Text of an element, which is not blank.
XmlKind XmlReader::ReadText() {
    std::wstring ignored;
    while (at_ < text_.size() && text_[at_] != L'<') {
        if (Skip(L"]]>")) {
            Fail(at_ - 3, L"text must not hold \"]]>\"");
        }
        if (Character() == L'&') {
            ReadReference(ignored);
        }
    }
    return XmlKind::Text;
}

XmlKind XmlReader::Next() {
    if (endDue_) {
        return ReadEndOfElement();
    }
    do {
        SkipBlanks();
    } while (SkipMarkup());
    offset_ = at_;
    if (at_ == text_.size()) {
        if (!open_.empty()) {
            Fail(at_, L"<" + open_.back() + L"> does not end");
        }
        if (!hadRoot_) {
            Fail(at_, L"there is no root element");
        }
        return XmlKind::End;
    }
    if (Skip(L"</")) {
        return ReadEndOfElement();
    }
    const bool data = Skip(L"<![CDATA[");
    if (!data && Skip(L"<")) {
        return ReadElement();
    }
    if (open_.empty()) {
        Fail(offset_, L"text outside the root element");
    }
    if (data) {
        Until(L"]]>", L"the CDATA section");
        return XmlKind::Text;
    }
    return ReadText();
}

} // namespace orv
