#include "types/CatalogueFields.h"

#include "core/Case.h"

namespace tam {

std::wstring CatalogueFields::Text(std::size_t field) const {
    return dom::TextOf(fields_[field].node);
}

bool CatalogueFields::Has(std::size_t field) {
    while (fields_.size() <= field && !isComplete_) {
        dom::Node next = last_ ? dom::NextSibling(last_) : dom::FirstChild(entry_);
        if (!next) {
            isComplete_ = true;
        } else if (dom::IsComment(next)) {
            last_ = std::move(next);
        } else {
            fields_.emplace_back().node = next;
            last_ = std::move(next);
        }
    }
    return field < fields_.size();
}

const std::wstring& CatalogueFields::Keyword(std::size_t field) {
    Field& found = fields_[field];
    if (!found.hasKeyword) {
        found.keyword = UpperCase(dom::BaseName(found.node));
        found.hasKeyword = true;
    }
    return found.keyword;
}

} // namespace tam
