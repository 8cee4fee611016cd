// A picture of an .ico file as PNG, written by hand: chunks with their CRC, and the pixels in
// blocks that are stored without compression. An icon is small, and the page needs no library.

#include "page/Icon.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace page {

namespace {

constexpr std::string_view kPngSignature = "\x89PNG\r\n\x1A\n";

std::string BigEndian(std::uint32_t number) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(number >> static_cast<unsigned>(shift) & 0xFFU);
    }
    return bytes;
}

std::uint32_t Crc(std::string_view bytes) {
    std::uint32_t crc = ~0U;
    for (const char c : bytes) {
        crc ^= static_cast<std::uint8_t>(c);
        for (int bit = 0; bit < 8; ++bit) {
            crc = crc >> 1U ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
        }
    }
    return ~crc;
}

std::uint32_t Adler(std::string_view bytes) {
    constexpr std::uint32_t kPrime = 65521;
    std::uint32_t sum = 1;
    std::uint32_t sums = 0;
    for (const char c : bytes) {
        sum = (sum + static_cast<std::uint8_t>(c)) % kPrime;
        sums = (sums + sum) % kPrime;
    }
    return sums << 16U | sum;
}

std::string Chunk(std::string_view kind, std::string_view data) {
    const std::string body = std::string(kind) + std::string(data);
    return BigEndian(static_cast<std::uint32_t>(data.size())) + body + BigEndian(Crc(body));
}

/// A stream of blocks that are stored as they are.
std::string Stored(std::string_view data) {
    constexpr std::size_t kLongest = 0xFFFF;
    std::string stream = "\x78\x01";
    for (std::size_t at = 0; at < data.size(); at += kLongest) {
        const std::string_view block = data.substr(at, kLongest);
        const auto size = static_cast<std::uint32_t>(block.size());
        stream += at + kLongest >= data.size() ? '\1' : '\0';
        for (const std::uint32_t part : {size & 0xFFU, size >> 8U, ~size & 0xFFU, ~size >> 8U & 0xFFU}) {
            stream += static_cast<char>(part);
        }
        stream += block;
    }
    return stream + BigEndian(Adler(data));
}

/// Numbers of an icon file, the lowest byte first; empty past its end.
class Reader {
  public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    std::optional<std::uint32_t> Number(std::size_t at, std::size_t size) const {
        if (at > bytes_.size() || bytes_.size() - at < size) {
            return std::nullopt;
        }
        std::uint32_t number = 0;
        for (std::size_t i = size; i-- > 0;) {
            number = number << 8U | static_cast<std::uint8_t>(bytes_[at + i]);
        }
        return number;
    }

  private:
    std::string_view bytes_;
};

/// A bitmap of 32 bits a pixel as icons hold them: upside down, and twice as high as
/// the picture, because of a mask behind it.
std::optional<Pixels> PixelsOfBitmap(std::string_view bitmap) {
    const Reader reader(bitmap);
    const auto header = reader.Number(0, 4);
    const auto width = reader.Number(4, 4);
    const auto height = reader.Number(8, 4);
    const auto depth = reader.Number(14, 2);
    constexpr std::uint32_t kLargest = 1024;
    if (!header || !width || !height || depth != 32U || *width == 0 || *width > kLargest || *height < 2 ||
        *height > 2 * kLargest) {
        return std::nullopt;
    }
    Pixels pixels{*width, *height / 2, {}};
    const std::size_t row = pixels.width * 4;
    if (*header > bitmap.size() || bitmap.size() - *header < row * pixels.height) {
        return std::nullopt;
    }
    for (std::size_t y = pixels.height; y-- > 0;) {
        const std::string_view line = bitmap.substr(*header + y * row, row);
        for (std::size_t x = 0; x < row; x += 4) {
            pixels.bytes += {line[x + 2], line[x + 1], line[x], line[x + 3]};
        }
    }
    return pixels;
}

} // namespace

std::string Png(const Pixels& pixels) {
    std::string rows;
    const std::size_t row = pixels.width * 4;
    for (std::size_t y = 0; y < pixels.height; ++y) {
        rows += '\0'; // no filter
        rows += std::string_view(pixels.bytes).substr(y * row, row);
    }
    constexpr std::string_view kEightBitsRgba("\x08\x06\0\0\0", 5);
    const std::string header = BigEndian(static_cast<std::uint32_t>(pixels.width)) +
                               BigEndian(static_cast<std::uint32_t>(pixels.height)) +
                               std::string(kEightBitsRgba);
    return std::string(kPngSignature) + Chunk("IHDR", header) + Chunk("IDAT", Stored(rows)) +
           Chunk("IEND", "");
}

std::string PngOfIcon(std::string_view icon) {
    constexpr std::size_t kHeader = 6;
    constexpr std::size_t kEntry = 16;
    const Reader reader(icon);
    if (reader.Number(0, 4) != 0x10000U) {
        return "";
    }
    std::string best;
    std::uint32_t widest = 0;
    const std::uint32_t count = reader.Number(4, 2).value_or(0);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::size_t entry = kHeader + i * kEntry;
        const auto size = reader.Number(entry + 8, 4);
        const auto place = reader.Number(entry + 12, 4);
        if (!size || !place || *place > icon.size() || icon.size() - *place < *size) {
            continue;
        }
        const std::string_view image = icon.substr(*place, *size);
        const std::uint32_t written = reader.Number(entry, 1).value_or(0);
        const std::uint32_t width = written == 0 ? 256 : written;
        if (width <= widest) {
            continue;
        }
        const auto pixels = image.starts_with(kPngSignature) ? std::nullopt : PixelsOfBitmap(image);
        if (pixels || image.starts_with(kPngSignature)) {
            best = pixels ? Png(*pixels) : std::string(image);
            widest = width;
        }
    }
    return best;
}

} // namespace page
