#include "core/EnumEditorState.h"

#include "core/Numbers.h"
#include "core/ValueNumber.h"

#include <algorithm>

namespace tam {

EnumEditorState::EnumEditorState(std::wstring_view value, std::wstring_view description)
    : value_(value), entries_(EnumEntries(description)) {
    const auto number = ValueNumber(value);
    if (!number) {
        return;
    }
    const double whole = RoundToEven(*number);
    const auto entry = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const EnumEntry& candidate) { return candidate.value == whole; });
    if (entry != entries_.end()) {
        selected_ = static_cast<std::size_t>(entry - entries_.begin());
    }
}

std::optional<std::wstring> EnumEditorState::ValueOf(std::wstring_view shown) const {
    const auto entry = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const EnumEntry& candidate) { return candidate.text == shown; });
    if (entry == entries_.end()) {
        return std::nullopt;
    }
    return std::to_wstring(entry->value);
}

} // namespace tam
