#include "check/Json.h"

#include "check/Utf8.h"

namespace check {

void JsonWriter::Name(std::string_view name) {
    if (!isFirst_) {
        text_ += ',';
    }
    if (depth_ > 0) {
        text_ += '\n';
        text_.append(2 * depth_, ' ');
    }
    isFirst_ = false;
    if (!name.empty()) {
        String(name);
        text_ += ": ";
    }
}

void JsonWriter::Begin(std::string_view name, char bracket) {
    Name(name);
    text_ += bracket;
    ++depth_;
    isFirst_ = true;
}

void JsonWriter::End(char bracket) {
    --depth_;
    if (!isFirst_) {
        text_ += '\n';
        text_.append(2 * depth_, ' ');
    }
    text_ += bracket;
    isFirst_ = false;
    if (print_ && text_.size() >= kPiece) {
        print_(text_);
        text_.clear();
    }
}

void JsonWriter::Text(std::string_view name, std::string_view value) {
    Name(name);
    String(value);
}

void JsonWriter::Number(std::string_view name, std::size_t value) {
    Name(name);
    text_ += std::to_string(value);
}

void JsonWriter::Flag(std::string_view name, bool value) {
    Name(name);
    text_ += value ? "true" : "false";
}

void JsonWriter::Null(std::string_view name) {
    Name(name);
    text_ += "null";
}

void JsonWriter::String(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    constexpr char32_t kReplacement = 0xFFFD;
    text_ += '"';
    for (std::size_t at = 0; at < text.size();) {
        const char32_t c = NextCharacter(text, at);
        if (c == '"' || c == '\\') {
            text_ += '\\';
            text_ += static_cast<char>(c);
        } else if (c < 0x20 || c == 0x7F) {
            text_ += "\\u00";
            text_ += kDigits[c >> 4U];
            text_ += kDigits[c & 0xFU];
        } else { // the name of a file may be no text
            const bool isCharacter = c < 0xD800 || (c > 0xDFFF && c < 0x110000);
            AppendCharacter(text_, isCharacter ? c : kReplacement);
        }
    }
    text_ += '"';
}

} // namespace check
