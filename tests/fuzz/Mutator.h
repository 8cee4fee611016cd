#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string_view>
#include <vector>

namespace tam::fuzz {

/// Makes inputs out of others: bytes changed, dropped, repeated, known words
/// put in, two inputs joined. The same seed makes the same inputs everywhere.
class Mutator {
  public:
    explicit Mutator(unsigned seed) : random_(seed) {}

    std::vector<std::uint8_t> Make(const std::vector<std::vector<std::uint8_t>>& pool) {
        std::vector<std::uint8_t> bytes = pool.empty() || Below(8) == 0 ? Noise() : pool[Below(pool.size())];
        for (std::size_t changes = 1 + Below(8); changes > 0; --changes) {
            Change(bytes, pool);
        }
        bytes.resize(std::min(bytes.size(), kMost));
        return bytes;
    }

  private:
    static constexpr std::size_t kMost = 600;

    // Not a distribution of the library: those differ from one to the next.
    std::size_t Below(std::size_t limit) { return limit == 0 ? 0 : random_() % limit; }
    std::uint8_t Byte() { return static_cast<std::uint8_t>(Below(256)); }

    std::vector<std::uint8_t> Noise() {
        std::vector<std::uint8_t> bytes(Below(80));
        std::generate(bytes.begin(), bytes.end(), [this] { return Byte(); });
        return bytes;
    }

    void Change(std::vector<std::uint8_t>& bytes, const std::vector<std::vector<std::uint8_t>>& pool) {
        static constexpr std::string_view kWords[] = {",",           ";",
                                                      "\n",          ".",
                                                      "-",           "1e999",
                                                      "1e-999",      "&HFFFF",
                                                      "&H80000000&", "32767",
                                                      "32768",       "-32769",
                                                      "2147483648",  "0.5",
                                                      "2.5",         "NaN",
                                                      "-0",          "_",
                                                      "000000",      "\xFF\x04\x13",
                                                      "\xFF\xD8",    "\xFF\x01\x30",
                                                      " ",           "\x08",
                                                      "\x1B",        "\x0D",
                                                      "\x16",        "&#x41;",
                                                      "&lt;",        "<!--",
                                                      "-->",         "<![CDATA[",
                                                      "]]>",         "/>",
                                                      "<?a ?>",      "<!DOCTYPE"};
        const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(Below(bytes.size() + 1));
        const auto upTo = at + static_cast<std::ptrdiff_t>(std::min<std::size_t>(
                                   Below(16), static_cast<std::size_t>(bytes.end() - at)));
        switch (Below(6)) {
        case 0:
            bytes.insert(at, Byte());
            return;
        case 1:
            bytes.erase(at, upTo);
            return;
        case 2: {
            const std::vector<std::uint8_t> part(at, upTo);
            bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(Below(bytes.size() + 1)), part.begin(),
                         part.end());
            return;
        }
        case 3: {
            const std::string_view word = kWords[Below(std::size(kWords))];
            bytes.insert(at, word.begin(), word.end());
            return;
        }
        case 4:
            if (at != bytes.end()) {
                *at = Byte();
            }
            return;
        default:
            if (!pool.empty()) {
                const auto& other = pool[Below(pool.size())];
                bytes.insert(at, other.begin(), other.end());
            }
        }
    }

    std::mt19937 random_;
};

} // namespace tam::fuzz
