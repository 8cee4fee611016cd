#include "diff/Json.h"

#include "check/Utf8.h"
#include "diff/Text.h"

#include <cstddef>

namespace diff {

namespace {

std::string Quoted(std::string_view text) {
    constexpr const char* kDigits = "0123456789abcdef";
    std::string quoted = "\"";
    for (std::size_t at = 0; at < text.size();) {
        const char32_t character = check::NextCharacter(text, at);
        if (character == '"' || character == '\\') {
            quoted += '\\';
            quoted += static_cast<char>(character);
        } else if (character < 0x20) {
            quoted += "\\u00";
            quoted += kDigits[character >> 4U];
            quoted += kDigits[character & 0xFU];
        } else {
            check::AppendCharacter(quoted, character);
        }
    }
    return quoted + '"';
}

void Add(std::string& text, std::string_view name, const std::string& value) {
    text += text.ends_with('{') ? "" : ", ";
    text += Quoted(name) + ": " + value;
}

std::string Line(std::size_t line) {
    return line == 0 ? "null" : std::to_string(line);
}

std::string ChangeText(const Change& change) {
    std::string text = "{";
    Add(text, "change", Quoted(WordOf(change.what)));
    Add(text, "kind", change.noun.empty() ? "null" : Quoted(change.noun));
    Add(text, "name", change.name.empty() ? "null" : Quoted(change.name));
    Add(text, "field", change.field.empty() ? "null" : Quoted(change.field));
    Add(text, "before", Quoted(change.before));
    Add(text, "after", Quoted(change.after));
    Add(text, "lineBefore", Line(change.lineBefore));
    Add(text, "lineAfter", Line(change.lineAfter));
    return text + "}";
}

} // namespace

std::string Json(const std::vector<Change>& changes, std::string_view kind, std::string_view before,
                 std::string_view after) {
    std::string text = "{\n  \"command\": \"diff\",\n  \"kind\": " + Quoted(kind) +
                       ",\n  \"before\": " + Quoted(before) + ",\n  \"after\": " + Quoted(after) +
                       ",\n  \"same\": " + (changes.empty() ? "true" : "false") + ",\n  \"changes\": [";
    for (std::size_t i = 0; i < changes.size(); ++i) {
        text += (i == 0 ? "\n    " : ",\n    ") + ChangeText(changes[i]);
    }
    return text + (changes.empty() ? "]\n}\n" : "\n  ]\n}\n");
}

} // namespace diff
