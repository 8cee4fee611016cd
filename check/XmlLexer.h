#pragma once

#include "check/Findings.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace check {

/// Walks the markup of a text. It goes on after what is wrong, always in the
/// same way: so a tree keeps positions alone, and names, attributes and texts are
/// walked once more when somebody asks for them, then without findings.
class XmlLexer {
  public:
    /// Findings may be null. The text is UTF-8 and outlives the lexer.
    XmlLexer(std::string_view text, Findings* findings, std::size_t at = 0)
        : text_(text), findings_(findings), at_(at) {}

    struct Attribute {
        Span name;
        /// Without its quotation marks.
        Span value;
    };

    bool IsAtEnd() const noexcept { return at_ >= text_.size(); }
    std::size_t At() const noexcept { return at_; }
    bool Looks(std::string_view mark) const noexcept { return text_.substr(at_).starts_with(mark); }
    /// Whether markup begins at a "<".
    bool IsMarkup() const noexcept;

    /// The XML declaration, if the text begins with one.
    void SkipDeclaration();
    /// After a text, which ends where markup begins.
    Span Text();
    /// After a comment, its content.
    Span Comment();
    Span CData();
    /// After an instruction, its target.
    Span Instruction();
    void Doctype();
    /// After "<!" that begins nothing known.
    void UnknownMarkup();
    /// The name in a start tag or an end tag.
    Span TagName();
    /// The next attribute of the start tag; none at its end, which NextAttribute passes.
    std::optional<Attribute> NextAttribute();
    /// Whether the start tag that was passed ends with "/>".
    bool IsEmptyTag() const noexcept { return isEmptyTag_; }
    /// After the name of an end tag.
    void EndOfEndTag();

    void Report(RuleId rule, Span span, std::string message, std::string expected = {},
                std::string suggestion = {});

  private:
    void SkipBlanks();
    Span Name();
    Span QuotedValue(char mark);
    Span BareValue();
    void CheckCharacters(Span span);
    void CheckReferences(Span span);
    void CheckLength(Span span);
    void DeclarationPart(std::string_view name, std::string_view value, Span span);

    std::string_view text_;
    Findings* findings_;
    std::size_t at_;
    bool isEmptyTag_ = false;
};

bool IsNameStart(char32_t c) noexcept;
bool IsNamePart(char32_t c) noexcept;

/// The text with its references replaced and with the ends of line that XML
/// gives. `isAttribute`: its blanks are spaces.
std::string Decoded(std::string_view raw, bool isAttribute);

} // namespace check
