#pragma once

#include "core/EnumDescription.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tam {

/// What the enumeration editor offers and which entry it opens with.
class EnumEditorState {
  public:
    /// Throws "overflow" for a description with a value past 16 bits.
    EnumEditorState(std::wstring_view value, std::wstring_view description);

    const std::vector<EnumEntry>& Entries() const noexcept { return entries_; }
    /// The first entry with the current value; none when there is no such
    /// entry, or when the value is no number.
    std::optional<std::size_t> Selected() const noexcept { return selected_; }
    /// The current value as it is shown: the text of its entry, or the value text
    /// when no entry has it.
    const std::wstring& Current() const noexcept { return selected_ ? entries_[*selected_].text : value_; }

    /// The value text of the first entry that shows this text; none when no
    /// entry does.
    std::optional<std::wstring> ValueOf(std::wstring_view shown) const;

  private:
    std::wstring value_;
    std::vector<EnumEntry> entries_;
    std::optional<std::size_t> selected_;
};

} // namespace tam
