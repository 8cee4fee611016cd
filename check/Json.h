#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace check {

/// Takes a long text in pieces.
using Print = std::function<void(const std::string&)>;
/// So many bytes of it are handed on at a time, or a few more.
inline constexpr std::size_t kPiece = std::size_t{1} << 16U;

/// Writes one JSON document, member by member, in the order of the calls.
class JsonWriter {
  public:
    JsonWriter() = default;
    /// Hands the text on while it grows.
    explicit JsonWriter(Print print) : print_(std::move(print)) {}

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
    /// Hands on the rest of it.
    void Finish() { print_(Take()); }

  private:
    void Begin(std::string_view name, char bracket);
    void End(char bracket);
    void Name(std::string_view name);
    void String(std::string_view text);

    Print print_;
    std::string text_;
    std::size_t depth_ = 0;
    bool isFirst_ = true;
};

} // namespace check
