#include "core/FieldParser.h"

#include <algorithm>

namespace tam {

std::wstring ParseString(std::wstring_view text, std::int32_t field, std::wstring_view delimiter) {
    if (field < 0) {
        return {};
    }
    FieldWalker walker(text, delimiter);
    auto found = walker.Next();
    for (std::int32_t i = 0; i < field && found; ++i) {
        found = walker.Next();
    }
    return std::wstring(found.value_or(std::wstring_view()));
}

std::optional<std::wstring_view> FieldWalker::Next() noexcept {
    if (isDone_) {
        return std::nullopt;
    }
    const std::size_t hit =
        delimiter_.empty() ? std::wstring_view::npos : text_.find(delimiter_, searchFrom_);
    isDone_ = hit == std::wstring_view::npos;
    // A search goes on one character after the last hit, so delimiters of
    // several characters may overlap: nothing lies between such two.
    const std::size_t fieldEnd = isDone_ ? text_.size() : std::max(hit, fieldBegin_);
    const std::wstring_view field = text_.substr(fieldBegin_, fieldEnd - fieldBegin_);
    if (!isDone_) {
        fieldBegin_ = hit + delimiter_.size();
        searchFrom_ = hit + 1;
    }
    return field;
}

} // namespace tam
