#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace orv {

struct XmlAttribute {
    std::wstring name;
    std::wstring value;
    /// Where its name begins in the text.
    std::size_t offset = 0;
};

enum class XmlKind { Element, EndOfElement, Text, End };

/// Walks a well-formed XML text forwards; the text must outlive the reader.
/// Comments, processing instructions and blanks are passed over, a document
/// type is refused. An own reader because the system's parsers that tell a
/// position differ between systems in what they accept and where they say it is.
class XmlReader {
  public:
    explicit XmlReader(std::wstring_view text);

    /// Throws errNotAnExportDocument where the text is not well-formed.
    XmlKind Next();

    /// Where the node that Next came to begins in the text.
    std::size_t Offset() const noexcept { return offset_; }
    /// Of an element or its end.
    const std::wstring& Name() const noexcept { return name_; }
    /// Of an element, in their order.
    const std::vector<XmlAttribute>& Attributes() const noexcept { return attributes_; }

    /// Throws errNotAnExportDocument: "line 1, column 7: " and the reason.
    [[noreturn]] void Fail(std::size_t offset, const std::wstring& reason) const;

  private:
    bool Skip(std::wstring_view mark) noexcept;
    bool SkipBlanks() noexcept;
    /// The text up to a mark, which is passed too; fails when it does not come.
    std::wstring_view Until(std::wstring_view mark, const wchar_t* what);
    bool SkipMarkup();
    std::wstring ReadName();
    wchar_t Character();
    void ReadReference(std::wstring& out);
    std::wstring ReadValue();
    void ReadAttributes();
    XmlKind ReadElement();
    XmlKind ReadEndOfElement();
    XmlKind ReadText();

    std::wstring_view text_;
    std::size_t at_ = 0;
    std::size_t offset_ = 0;
    std::wstring name_;
    std::vector<XmlAttribute> attributes_;
    /// Names of the elements that are open.
    std::vector<std::wstring> open_;
    /// The last element was written with "/>": its end comes next.
    bool endDue_ = false;
    bool hadRoot_ = false;
};

} // namespace orv
