#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace tam::fuzz {

/// A property that does not hold. Under libFuzzer it goes uncaught and ends the
/// program, which is how the fuzzer learns of it; the test catches it.
class BrokenProperty : public std::runtime_error {
  public:
    BrokenProperty(const char* file, int line)
        : std::runtime_error(std::string(file) + ":" + std::to_string(line)) {}
};

/// The place is the caller's. Of std::source_location the fuzzer's compiler
/// knows nothing.
inline void Require(bool holds, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
    if (!holds) {
        throw BrokenProperty(file, line);
    }
}

/// What the fuzzer gives, read from its start. After its end all bytes are 0.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    std::size_t Size() const noexcept { return size_; }
    bool IsAtEnd() const noexcept { return at_ >= size_; }

    std::uint8_t Byte() noexcept { return IsAtEnd() ? std::uint8_t{0} : data_[at_++]; }
    std::size_t Below(std::size_t limit) noexcept { return limit == 0 ? 0 : Byte() % limit; }
    /// A byte each; a byte FF and the two after it are one, so that letters of
    /// any alphabet and halves of surrogate pairs are reached.
    wchar_t Character() noexcept {
        const std::uint8_t first = Byte();
        if (first != kWide) {
            return static_cast<wchar_t>(first);
        }
        const std::uint8_t high = Byte();
        return static_cast<wchar_t>(high << 8 | Byte());
    }
    /// What stands before the next line feed.
    std::wstring Line() {
        std::wstring line;
        while (!IsAtEnd()) {
            const wchar_t c = Character();
            if (c == L'\n') {
                break;
            }
            line.push_back(c);
        }
        return line;
    }
    std::wstring Rest() {
        std::wstring rest;
        while (!IsAtEnd()) {
            rest.push_back(Character());
        }
        return rest;
    }
    /// Up to `most` characters, fewer where a line feed or the end comes first.
    std::wstring Word(std::size_t most) {
        std::wstring word;
        while (word.size() < most && !IsAtEnd()) {
            const wchar_t c = Character();
            if (c == L'\n') {
                break;
            }
            word.push_back(c);
        }
        return word;
    }

  private:
    static constexpr std::uint8_t kWide = 0xFF;

    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t at_ = 0;
};

} // namespace tam::fuzz
