#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tam {

/// Field `field`, from 0, of a text split by a delimiter (case counts); empty
/// when there is no such field. An empty delimiter splits nothing: the whole
/// text is field 0. Each call walks the text from its start; a loop over the
/// fields takes a FieldWalker.
std::wstring ParseString(std::wstring_view text, std::int32_t field, std::wstring_view delimiter);

/// The fields 0, 1, 2, ... of a text, in time linear in the text for all of
/// them, and the same as ParseString gives. A text has one field more than
/// delimiters, so that an empty one has one field. Keeps views of its
/// arguments.
class FieldWalker {
  public:
    FieldWalker(std::wstring_view text, std::wstring_view delimiter) noexcept
        : text_(text), delimiter_(delimiter) {}

    /// The next field, nothing after the last.
    std::optional<std::wstring_view> Next() noexcept;

  private:
    std::wstring_view text_;
    std::wstring_view delimiter_;
    std::size_t fieldBegin_ = 0;
    std::size_t searchFrom_ = 0;
    bool isDone_ = false;
};

} // namespace tam
