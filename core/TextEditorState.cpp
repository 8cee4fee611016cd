#include "core/TextEditorState.h"

#include <algorithm>
#include <cstddef>

namespace tam {

KeyAnswer TextEditorState::Key(wchar_t key, const EditText& edit) const {
    switch (key) {
    case kEscape:
        return KeyAnswer::Replace(AllSelected(opening_));
    case kEnter:
        return KeyAnswer::Confirm();
    case kBackspace:
        return KeyAnswer::Replace(AfterBackspace(edit));
    case L' ':
        return KeyAnswer::PassOn(L'_');
    default:
        return KeyAnswer::PassOn(key);
    }
}

std::optional<std::wstring> TextEditorState::Insertion(std::wstring_view pasted) {
    std::wstring line(pasted.substr(0, pasted.find_first_of(L"\r\n")));
    if (line.empty() && !pasted.empty()) {
        return std::nullopt; // an empty line would only take the selection away
    }
    std::replace(line.begin(), line.end(), L' ', L'_');
    return line;
}

std::optional<TextEditorState::Shortened> TextEditorState::TooLong(std::wstring_view text,
                                                                   std::int32_t length) {
    const std::size_t room = static_cast<std::size_t>(std::max(length, 0));
    if (text.size() <= room) {
        return std::nullopt;
    }
    return Shortened{L"The text cannot exceed " + std::to_wstring(length) + L" characters", L"Name too long",
                     std::wstring(text.substr(0, room))};
}

} // namespace tam
