#pragma once

#include "com/Ref.h"

#include <windows.h>

#include <xmllite.h>

#include <string>
#include <string_view>
#include <vector>

namespace orv {

/// Where something stands in a text; both count from 1.
struct XmlPosition {
    unsigned line = 0;
    unsigned column = 0;
};

struct XmlAttribute {
    std::wstring name;
    std::wstring value;
    XmlPosition position;
};

enum class XmlKind { Element, EndOfElement, Text, End };

/// Walks an XML text forwards. Comments, processing instructions and blanks
/// between elements are passed over; a document type is refused. Every failure
/// is errNotAnExportDocument with the position.
class XmlReader {
  public:
    explicit XmlReader(std::wstring_view text);

    XmlKind Next();
    /// Of the node that Next came to.
    XmlPosition Position() const;
    std::wstring Name() const;
    /// Of an element: true when no end of it will come.
    bool IsEmpty() const;
    /// Attributes of an element, in their order. Namespace declarations among them.
    std::vector<XmlAttribute> Attributes();

  private:
    std::wstring Value() const;

    com::Ref<IXmlReader> reader_;
};

/// Throws errNotAnExportDocument: "line 1, column 7: " and the reason.
[[noreturn]] void ThrowBadDocument(XmlPosition position, const std::wstring& reason);

} // namespace orv
