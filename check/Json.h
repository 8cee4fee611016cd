#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace check {

/// Writes one JSON document, member by member, in the order of the calls.
class JsonWriter {
  public:
    void BeginObject(std::string_view name = {}) { Begin(name, '{'); }
    void EndObject() { End('}'); }
    void BeginArray(std::string_view name = {}) { Begin(name, '['); }
    void EndArray() { End(']'); }
    void Text(std::string_view name, std::string_view value);
    void Number(std::string_view name, std::size_t value);
    void Flag(std::string_view name, bool value);
    void Null(std::string_view name);
    /// Of an array.
    void Item(std::string_view text) { Text({}, text); }

    /// The whole document with a line end.
    std::string Take() { return std::move(text_) + "\n"; }

  private:
    void Begin(std::string_view name, char bracket);
    void End(char bracket);
    void Name(std::string_view name);
    void String(std::string_view text);

    std::string text_;
    std::size_t depth_ = 0;
    bool isFirst_ = true;
};

} // namespace check
