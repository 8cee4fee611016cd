#include "page/Icon.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pagetest {

using page::Png;
using page::PngOfIcon;

namespace {

/// The number in its bytes, the lowest first.
std::string Low(std::uint32_t number, std::size_t size) {
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i) {
        bytes += static_cast<char>(number >> 8 * i & 0xFFU);
    }
    return bytes;
}

/// A bitmap of an icon: rows from below, each pixel blue, green, red, opacity.
std::string Bitmap(std::uint32_t width, std::uint32_t height, const std::string& pixels,
                   std::uint32_t depth = 32) {
    return Low(40, 4) + Low(width, 4) + Low(2 * height, 4) + Low(1, 2) + Low(depth, 2) +
           std::string(24, '\0') + pixels + std::string(4, '\0');
}

struct Entry {
    std::uint32_t width;
    std::string image;
};

std::string IconOf(const std::vector<Entry>& entries) {
    std::string icon = Low(0x10000, 4) + Low(static_cast<std::uint32_t>(entries.size()), 2);
    std::size_t place = icon.size() + 16 * entries.size();
    for (const Entry& entry : entries) {
        icon += Low(entry.width, 1) + Low(entry.width, 1) + Low(0, 2) + Low(1, 2) + Low(32, 2) +
                Low(static_cast<std::uint32_t>(entry.image.size()), 4) +
                Low(static_cast<std::uint32_t>(place), 4);
        place += entry.image.size();
    }
    for (const Entry& entry : entries) {
        icon += entry.image;
    }
    return icon;
}

std::uint32_t High(std::string_view bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        number = number << 8U | static_cast<std::uint8_t>(bytes.at(at + i));
    }
    return number;
}

TEST(IconPngTest, WritesOnePixelAsTheFormatSays) {
    const std::string png = Png({1, 1, "\x01\x02\x03\x04"});
    ASSERT_EQ(8U + 25 + 12 + 2 + 5 + 5 + 4 + 12, png.size());
    EXPECT_EQ("\x89PNG\r\n\x1A\n", png.substr(0, 8));
    EXPECT_EQ(13U, High(png, 8));
    EXPECT_EQ("IHDR", png.substr(12, 4));
    EXPECT_EQ(1U, High(png, 16));
    EXPECT_EQ(1U, High(png, 20));
    EXPECT_EQ(std::string("\x08\x06\0\0\0", 5), png.substr(24, 5));
    // The checksum of this header as other programs write it.
    EXPECT_EQ(0x1F15C489U, High(png, 29));
    EXPECT_EQ("IDAT", png.substr(37, 4));
    EXPECT_EQ(std::string("\x78\x01\x01\x05\x00\xFA\xFF\x00\x01\x02\x03\x04", 12), png.substr(41, 12));
    EXPECT_EQ(0x0019000BU, High(png, 53)); // sums of 0, 1, 2, 3, 4
    EXPECT_EQ("IEND", png.substr(65, 4));
    EXPECT_EQ(0xAE426082U, High(png, 69));
}

TEST(IconTest, TurnsTheBitmapTheRightWay) {
    const std::string lower = "\x03\x02\x01\xFF";
    const std::string upper = "\x06\x05\x04\x80";
    EXPECT_EQ(Png({1, 2, "\x04\x05\x06\x80\x01\x02\x03\xFF"}),
              PngOfIcon(IconOf({{1, Bitmap(1, 2, lower + upper)}})));
}

TEST(IconTest, TakesTheLargestPictureThatItCanRead) {
    const std::string pixel = "\x03\x02\x01\xFF";
    const std::string four = pixel + pixel + pixel + pixel;
    const std::string small = Bitmap(1, 1, pixel);
    const std::string large = Bitmap(2, 2, four);
    EXPECT_EQ(PngOfIcon(IconOf({{2, large}})), PngOfIcon(IconOf({{1, small}, {2, large}})));
    EXPECT_EQ(PngOfIcon(IconOf({{2, large}})), PngOfIcon(IconOf({{2, large}, {1, small}})));
    EXPECT_EQ(PngOfIcon(IconOf({{1, small}})), PngOfIcon(IconOf({{1, small}, {2, Bitmap(2, 2, four, 8)}})));
}

TEST(IconTest, HandsOnAPictureThatIsAPng) {
    const std::string png = Png({1, 1, "\x01\x02\x03\x04"});
    EXPECT_EQ(png, PngOfIcon(IconOf({{0, png}, {48, Bitmap(1, 1, "abcd")}})));
}

TEST(IconTest, AnswersNothingForWhatIsNoIcon) {
    const std::string icon = IconOf({{1, Bitmap(1, 1, "abcd")}});
    EXPECT_EQ("", PngOfIcon(""));
    EXPECT_EQ("", PngOfIcon("BM"));
    EXPECT_EQ("", PngOfIcon(IconOf({})));
    EXPECT_EQ("", PngOfIcon(IconOf({{1, Bitmap(0, 1, "")}})));
    EXPECT_EQ("", PngOfIcon(IconOf({{1, Bitmap(0xFFFFFFFF, 0x7FFFFFFF, "")}})));
    // Cut anywhere, it is either read or not, and nothing beyond its end is.
    for (std::size_t size = 0; size < icon.size() - 4; ++size) {
        EXPECT_EQ("", PngOfIcon(std::string_view(icon).substr(0, size))) << size;
    }
}

} // namespace

} // namespace pagetest
