#include "ImageReader.h"

#include "host/Image.h"
#include "Input.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace tam::fuzz {

namespace {

constexpr std::size_t kHeader = 40;
constexpr std::size_t kMostBytes = 0xFFFF;
constexpr wchar_t kReplacement = 0xFFFD;

/// The characters of UTF-8, in units of 16 bits.
std::wstring Decoded(const std::uint8_t* bytes, std::size_t size) {
    std::wstring text;
    for (std::size_t at = 0; at < size;) {
        const std::uint32_t first = bytes[at++];
        const int more = first < 0x80 ? 0 : first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
        std::uint32_t code = more == 0 ? first : first & (0x3Fu >> more);
        for (int i = 0; i < more; ++i) {
            Require(at < size && (bytes[at] & 0xC0) == 0x80);
            code = code << 6 | (bytes[at++] & 0x3Fu);
        }
        Require(code < 0xD800 || code > 0xDFFF);
        if (code < 0x10000) {
            text += static_cast<wchar_t>(code);
        } else {
            text += static_cast<wchar_t>(0xD7C0 + (code >> 10));
            text += static_cast<wchar_t>(0xDC00 + (code & 0x3FF));
        }
    }
    return text;
}

/// A text as an image can hold it: without halves of surrogate pairs.
std::wstring Held(std::wstring text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isFirst = text[i] >= 0xD800 && text[i] <= 0xDBFF;
        const bool isSecond = text[i] >= 0xDC00 && text[i] <= 0xDFFF;
        if (isFirst && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
            ++i;
        } else if (isFirst || isSecond) {
            text[i] = kReplacement;
        }
    }
    return text;
}

bool IsLong(const std::wstring& text) {
    std::size_t bytes = 0;
    for (const wchar_t c : Held(text)) {
        const bool isHalf = c >= 0xD800 && c <= 0xDFFF; // two of them take four
        bytes += c < 0x80 ? 1 : c < 0x800 || isHalf ? 2 : 3;
    }
    return bytes > kMostBytes;
}

/// Bitwise, as the polynomial stands.
std::uint32_t ChecksumByRule(const std::vector<std::uint8_t>& bytes, std::size_t size) {
    std::uint32_t sum = 0xFFFFFFFF;
    for (std::size_t i = 0; i < size; ++i) {
        sum ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum & 1) != 0 ? sum >> 1 ^ 0xEDB88320 : sum >> 1;
        }
    }
    return ~sum;
}

class ImageReader {
  public:
    explicit ImageReader(const std::vector<std::uint8_t>& image) : image_(image) {}

    std::uint32_t Number(int bytes) {
        std::uint32_t number = 0;
        for (int i = 0; i < bytes; ++i) {
            Require(at_ < image_.size());
            number |= static_cast<std::uint32_t>(image_[at_++]) << (8 * i);
        }
        return number;
    }
    void Expect(int bytes, std::uint32_t number) { Require(Number(bytes) == number); }
    void ExpectText(const std::wstring& text) {
        const std::size_t at = textsAt_ + Number(4);
        Require(at + 2 <= image_.size());
        const std::size_t size = image_[at] | static_cast<std::size_t>(image_[at + 1]) << 8;
        Require(at + 2 + size <= image_.size());
        Require(Decoded(image_.data() + at + 2, size) == Held(text));
    }
    void SetTexts(std::size_t at) { textsAt_ = at; }
    std::size_t At() const { return at_; }

  private:
    const std::vector<std::uint8_t>& image_;
    std::size_t at_ = 0;
    std::size_t textsAt_ = 0;
};

template <class Point>
void ExpectPoint(ImageReader& reader, const Point& point, unsigned flags) {
    reader.ExpectText(point.name);
    reader.ExpectText(point.type.identifier);
    reader.Expect(2, point.logicalAddress);
    reader.Expect(2, point.type.index);
    reader.Expect(1, point.type.length);
    reader.Expect(1, flags);
}

void ExpectRecords(ImageReader& reader, const orv::ExportDocument& document) {
    for (const orv::ExportInput& input : document.inputs) {
        ExpectPoint(reader, input, (input.connected ? 1u : 0) | (input.permanent ? 2u : 0));
        reader.Expect(2, 0);
        reader.ExpectText(input.linkReference);
    }
    for (const orv::ExportOutput& output : document.outputs) {
        ExpectPoint(reader, output,
                    (output.connected ? 1u : 0) | (output.mappedAsObject ? 2u : 0) |
                        (output.writable ? 4u : 0) | (output.displayWritable ? 8u : 0));
        reader.Expect(2, output.objectOffset);
        reader.Expect(2, output.absoluteObjectIndex);
        reader.Expect(2, 0);
    }
    for (const orv::ExportAttribute& attribute : document.attributes) {
        ExpectPoint(reader, attribute, (attribute.connected ? 1u : 0) | (attribute.permanent ? 2u : 0));
        reader.Expect(2, 0);
        reader.ExpectText(attribute.value);
        reader.ExpectText(attribute.enumDescription);
    }
}

void CheckHexLines(const std::vector<std::uint8_t>& image) {
    const std::wstring text = orv::HexLines(image);
    std::size_t at = 0;
    for (std::size_t i = 0; i < image.size(); ++i) {
        Require(std::stoul(text.substr(at, 2), nullptr, 16) == image[i]);
        at += 2;
        if ((i + 1) % 32 == 0 || i + 1 == image.size()) {
            Require(text.compare(at, 2, L"\r\n") == 0);
            at += 2;
        }
    }
    Require(at == text.size() && text.find_first_of(L"abcdef") == std::wstring::npos);
}

} // namespace

bool HasLongText(const orv::ExportDocument& document) {
    bool isLong = IsLong(document.applicationId) || IsLong(document.deviceKey);
    for (const orv::ExportInput& input : document.inputs) {
        isLong = isLong || IsLong(input.name) || IsLong(input.type.identifier) || IsLong(input.linkReference);
    }
    for (const orv::ExportOutput& output : document.outputs) {
        isLong = isLong || IsLong(output.name) || IsLong(output.type.identifier);
    }
    for (const orv::ExportAttribute& attribute : document.attributes) {
        isLong = isLong || IsLong(attribute.name) || IsLong(attribute.type.identifier) ||
                 IsLong(attribute.value) || IsLong(attribute.enumDescription);
    }
    return isLong;
}

void CheckImage(const orv::ExportDocument& document, const std::vector<std::uint8_t>& image) {
    ImageReader reader(image);
    for (const char c : {'O', 'T', 'I', 'M'}) {
        reader.Expect(1, static_cast<std::uint8_t>(c));
    }
    reader.Expect(1, 1);
    reader.Expect(1, document.lastOnDevice ? 1 : 0);
    reader.Expect(2, static_cast<std::uint16_t>(document.deviceAddress));
    reader.Expect(2, static_cast<std::uint16_t>(document.objectId));
    reader.Expect(2, static_cast<std::uint32_t>(document.inputs.size()));
    reader.Expect(2, static_cast<std::uint32_t>(document.outputs.size()));
    reader.Expect(2, static_cast<std::uint32_t>(document.attributes.size()));
    reader.Expect(4, static_cast<std::uint32_t>(image.size()));
    const std::size_t textsAt =
        kHeader + 20 * (document.inputs.size() + document.outputs.size()) + 24 * document.attributes.size();
    reader.Expect(4, static_cast<std::uint32_t>(textsAt));
    reader.SetTexts(textsAt);
    reader.ExpectText(document.applicationId);
    reader.ExpectText(document.deviceKey);
    const orv::DatabaseSizes sizes = orv::SizesOf(document);
    reader.Expect(4, sizes.cdb);
    reader.Expect(4, sizes.ddb);
    ExpectRecords(reader, document);
    Require(reader.At() == textsAt);
    reader.Expect(2, 0); // the empty text is the first
    const std::uint32_t sum = ChecksumByRule(image, image.size() - 4);
    for (std::size_t i = 0; i < 4; ++i) {
        Require(image[image.size() - 4 + i] == static_cast<std::uint8_t>(sum >> (8 * i)));
    }
    CheckHexLines(image);
}

} // namespace tam::fuzz
