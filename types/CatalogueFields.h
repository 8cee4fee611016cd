#pragma once

#include "com/Dom.h"

#include <cstddef>
#include <deque>
#include <string>
#include <utility>

namespace tam {

/// The children of a catalogue entry without the comments, with their names. Each
/// is looked up in the document once however often they are walked: most entries
/// are walked twice, once for the type and once for what such a type has. A text
/// is read when it is asked for, which happens in one of the two walks.
/// They are read when a walk comes to them, so a walk that ends early has read
/// no more than it saw. A read that failed is tried again by the next walk.
class CatalogueFields {
  public:
    explicit CatalogueFields(dom::Node entry) : entry_(std::move(entry)) {}

    /// Calls visit(keyword, field) for each child in document order: its local
    /// name in upper case and what Text takes.
    template <class F>
    void ForEach(F&& visit) {
        for (std::size_t field = 0; Has(field); ++field) {
            visit(Keyword(field), field);
        }
    }
    /// Text of the child with all below it.
    std::wstring Text(std::size_t field) const;

  private:
    struct Field {
        dom::Node node;
        bool hasKeyword = false;
        std::wstring keyword;
    };

    /// Reads on until that child is known; false when there is none.
    bool Has(std::size_t field);
    const std::wstring& Keyword(std::size_t field);

    dom::Node entry_;
    /// The child read last, comment or not; empty before the first one.
    dom::Node last_;
    bool isComplete_ = false;
    /// A walk inside a walk may add to it: what the outer one holds stays where it is.
    std::deque<Field> fields_;
};

} // namespace tam
