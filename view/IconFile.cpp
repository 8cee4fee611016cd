#include "view/IconFile.h"

#include <cstddef>
#include <cstdlib>

namespace view {

namespace {

// An icon file: a head, then an entry for each picture, then the pictures.
constexpr std::size_t kHead = 6;
constexpr std::size_t kEntry = 16;
constexpr std::size_t kBytesAt = 8;
constexpr std::size_t kOffsetAt = 12;
constexpr DWORD kVersion = 0x00030000;

std::size_t Number(const std::string& bytes, std::size_t at, std::size_t size) noexcept {
    std::size_t number = 0;
    for (std::size_t i = size; i > 0; --i) {
        number = number << 8U | static_cast<unsigned char>(bytes[at + i - 1]);
    }
    return number;
}

} // namespace

HICON IconOfFile(const std::string& bytes, int size) noexcept {
    if (bytes.size() < kHead) {
        return nullptr;
    }
    const std::size_t count = Number(bytes, 4, 2);
    std::size_t best = 0;
    int bestMiss = -1;
    for (std::size_t i = 0; i < count && kHead + (i + 1) * kEntry <= bytes.size(); ++i) {
        const std::size_t entry = kHead + i * kEntry;
        const std::size_t width = Number(bytes, entry, 1);
        const int miss = std::abs(static_cast<int>(width == 0 ? 256 : width) - size);
        if (bestMiss < 0 || miss < bestMiss) {
            best = entry;
            bestMiss = miss;
        }
    }
    if (bestMiss < 0) {
        return nullptr;
    }
    const std::size_t length = Number(bytes, best + kBytesAt, 4);
    const std::size_t offset = Number(bytes, best + kOffsetAt, 4);
    if (offset > bytes.size() || length > bytes.size() - offset) {
        return nullptr;
    }
    std::string picture = bytes.substr(offset, length);
    return CreateIconFromResourceEx(reinterpret_cast<BYTE*>(picture.data()), static_cast<DWORD>(length), TRUE,
                                    kVersion, size, size, LR_DEFAULTCOLOR);
}

} // namespace view
