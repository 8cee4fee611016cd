// Tags and their attributes, and how reading goes on after what is wrong in them.

#include "check/Utf8.h"
#include "check/XmlLexer.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace check {

namespace {

constexpr std::size_t kNone = std::string_view::npos;

} // namespace

Span XmlLexer::TagName() {
    at_ += text_.substr(at_).starts_with("</") ? 2U : 1U;
    isEmptyTag_ = false;
    return Name();
}

Span XmlLexer::QuotedValue(char mark) {
    const std::size_t begin = ++at_;
    const char stops[] = {mark, '<', '\0'};
    const std::size_t stop = text_.find_first_of(std::string_view(stops, 2), begin);
    std::size_t end = stop;
    if (stop == kNone || text_[stop] == '<') {
        const std::string_view before = text_.substr(begin, (stop == kNone ? text_.size() : stop) - begin);
        const std::size_t tagEnd = before.find('>');
        const std::size_t close = tagEnd == kNone && stop != kNone ? text_.find(mark, stop) : kNone;
        if (close == kNone) {
            Report(RuleId::XmlAttribute, {begin - 1, 1}, "the value of an attribute does not end",
                   std::string("a closing ") + mark);
            end = begin + (tagEnd == kNone ? before.size() : tagEnd);
            at_ = end;
        } else {
            Report(RuleId::XmlAttribute, {stop, 1}, "\"<\" in the value of an attribute", "\"&lt;\"", "&lt;");
            end = close;
            at_ = end + 1;
        }
    } else {
        at_ = end + 1;
    }
    const Span value{begin, end - begin};
    CheckCharacters(value);
    CheckReferences(value);
    return value;
}

Span XmlLexer::BareValue() {
    const std::size_t begin = at_;
    while (!IsAtEnd() && !IsBlank(text_[at_]) && text_[at_] != '>' && text_[at_] != '<' && !Looks("/>")) {
        ++at_;
    }
    const Span value{begin, at_ - begin};
    Report(RuleId::XmlAttribute, {begin, std::max<std::size_t>(value.size, 1)},
           "the value of an attribute stands without quotation marks",
           Quoted(text_.substr(value.at, value.size)));
    return value;
}

std::optional<XmlLexer::Attribute> XmlLexer::NextAttribute() {
    for (;;) {
        const std::size_t begin = at_;
        SkipBlanks();
        if (IsAtEnd() || text_[at_] == '<') {
            Report(RuleId::XmlTag, {at_, IsAtEnd() ? 0U : 1U}, "the tag does not end", "\">\"");
            return std::nullopt;
        }
        if (Looks(">") || Looks("/>")) {
            isEmptyTag_ = text_[at_] == '/';
            at_ += isEmptyTag_ ? 2U : 1U;
            return std::nullopt;
        }
        const bool hasBlank = at_ > begin;
        Attribute attribute;
        attribute.name = Name();
        if (attribute.name.size == 0) {
            std::size_t next = at_;
            NextCharacter(text_, next);
            Report(RuleId::XmlTag, {at_, next - at_},
                   Quoted(text_.substr(at_, next - at_)) + " has no place in a tag");
            at_ = next;
            continue;
        }
        if (!hasBlank) {
            Report(RuleId::XmlAttribute, attribute.name, "a blank is missing before the attribute");
        }
        SkipBlanks();
        if (!Looks("=")) {
            Report(RuleId::XmlAttribute, attribute.name,
                   "the attribute " + Quoted(text_.substr(attribute.name.at, attribute.name.size)) +
                       " has no value",
                   "=\"...\"");
            attribute.value = {at_, 0};
            return attribute;
        }
        ++at_;
        SkipBlanks();
        const char mark = IsAtEnd() ? '\0' : text_[at_];
        attribute.value = mark == '"' || mark == '\'' ? QuotedValue(mark) : BareValue();
        return attribute;
    }
}

void XmlLexer::EndOfEndTag() {
    SkipBlanks();
    if (Looks(">")) {
        ++at_;
        return;
    }
    Report(RuleId::XmlTag, {at_, IsAtEnd() ? 0U : 1U}, "the end tag does not end", "\">\"");
    const std::size_t end = text_.find_first_of("<>", at_);
    at_ = end == kNone ? text_.size() : end + (text_[end] == '>' ? 1U : 0U);
}

} // namespace check
