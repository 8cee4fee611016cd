#include "host/Image.h"

#include "core/RunTimeError.h"

#include <array>
#include <cstddef>
#include <initializer_list>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace orv {

namespace {

constexpr std::array<std::uint8_t, 4> kMagic{'O', 'T', 'I', 'M'};
constexpr std::uint8_t kVersion = 1;
constexpr std::size_t kHeaderBytes = 40;
constexpr std::size_t kChecksumBytes = 4;
constexpr std::size_t kMaxTextBytes = 0xFFFF;

constexpr std::size_t kBytesInLine = 32;

// What a controller keeps. Configuration memory: a descriptor of the object,
// one of each point, and the values of permanent attributes. Dynamic memory:
// a value and a status byte of each input and output, and the values of the
// other attributes.
constexpr std::uint32_t kObjectConfiguration = 16;
constexpr std::uint32_t kInputConfiguration = 8;
constexpr std::uint32_t kOutputConfiguration = 10;
constexpr std::uint32_t kAttributeConfiguration = 6;
constexpr std::uint32_t kStatus = 1;

/// A byte of flags, the first one in bit 0.
std::uint8_t Flags(std::initializer_list<bool> flags) {
    unsigned byte = 0;
    unsigned bit = 1;
    for (const bool flag : flags) {
        byte |= flag ? bit : 0u;
        bit <<= 1;
    }
    return static_cast<std::uint8_t>(byte);
}

constexpr bool IsFirstHalf(std::uint32_t code) noexcept {
    return code >= 0xD800 && code < 0xDC00;
}
constexpr bool IsSecondHalf(std::uint32_t code) noexcept {
    return code >= 0xDC00 && code < 0xE000;
}

void AppendUtf8(std::string& bytes, std::uint32_t code) {
    const auto append = [&](std::uint32_t byte) { bytes += static_cast<char>(byte); };
    if (code < 0x80) {
        append(code);
        return;
    }
    if (code < 0x800) {
        append(0xC0 | code >> 6);
    } else if (code < 0x10000) {
        append(0xE0 | code >> 12);
        append(0x80 | (code >> 6 & 0x3F));
    } else {
        append(0xF0 | code >> 18);
        append(0x80 | (code >> 12 & 0x3F));
        append(0x80 | (code >> 6 & 0x3F));
    }
    append(0x80 | (code & 0x3F));
}

/// A text in UTF-8. Half of a surrogate pair becomes the replacement character.
std::string Utf8(std::wstring_view text) {
    constexpr std::uint32_t kReplacement = 0xFFFD;
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::uint32_t code = static_cast<char16_t>(text[i]);
        const std::uint32_t next = i + 1 < text.size() ? static_cast<char16_t>(text[i + 1]) : 0;
        if (IsFirstHalf(code) && IsSecondHalf(next)) {
            AppendUtf8(bytes, 0x10000 + ((code - 0xD800) << 10) + (next - 0xDC00));
            ++i;
        } else {
            AppendUtf8(bytes, IsFirstHalf(code) || IsSecondHalf(code) ? kReplacement : code);
        }
    }
    return bytes;
}

/// Bytes in the order of the image, numbers with the low byte first.
class Bytes {
  public:
    void U8(std::uint8_t value) { data_.push_back(value); }
    void U16(std::uint16_t value) {
        U8(static_cast<std::uint8_t>(value));
        U8(static_cast<std::uint8_t>(value >> 8));
    }
    void U32(std::uint32_t value) {
        U16(static_cast<std::uint16_t>(value));
        U16(static_cast<std::uint16_t>(value >> 16));
    }
    template <class Range>
    void Append(const Range& bytes) {
        data_.insert(data_.end(), bytes.begin(), bytes.end());
    }
    std::size_t Size() const { return data_.size(); }
    const std::vector<std::uint8_t>& Data() const { return data_; }
    std::vector<std::uint8_t> Take() { return std::move(data_); }

  private:
    std::vector<std::uint8_t> data_;
};

/// The texts, each once, in the order in which records first name them. A
/// record holds a text's offset from the start of the text section.
class Texts {
  public:
    Texts() { Offset({}); }

    std::uint32_t Offset(std::wstring_view text) {
        const auto known = offsets_.find(text);
        if (known != offsets_.end()) {
            return known->second;
        }
        const std::string bytes = Utf8(text);
        if (bytes.size() > kMaxTextBytes) {
            throw tam::RunTimeError(kNotAnExportDocument, {},
                                    L"a text is longer than 65535 bytes; it begins with \"" +
                                        std::wstring(text.substr(0, 40)) + L"\"");
        }
        const auto offset = static_cast<std::uint32_t>(bytes_.Size());
        bytes_.U16(static_cast<std::uint16_t>(bytes.size()));
        bytes_.Append(bytes);
        offsets_.emplace(text, offset);
        return offset;
    }
    const std::vector<std::uint8_t>& Data() const { return bytes_.Data(); }

  private:
    /// The texts belong to the document, which outlives the image's making.
    std::unordered_map<std::wstring_view, std::uint32_t> offsets_;
    Bytes bytes_;
};

/// What all records begin with.
void PutPoint(Bytes& out, Texts& texts, const std::wstring& name, std::uint16_t address,
              const PointType& type, std::uint8_t flags) {
    out.U32(texts.Offset(name));
    out.U32(texts.Offset(type.identifier));
    out.U16(address);
    out.U16(type.index);
    out.U8(type.length);
    out.U8(flags);
}

void Put(Bytes& out, Texts& texts, const ExportInput& input) {
    PutPoint(out, texts, input.name, input.logicalAddress, input.type,
             Flags({input.connected, input.permanent}));
    out.U16(0);
    out.U32(texts.Offset(input.linkReference));
}

void Put(Bytes& out, Texts& texts, const ExportOutput& output) {
    PutPoint(out, texts, output.name, output.logicalAddress, output.type,
             Flags({output.connected, output.mappedAsObject, output.writable, output.displayWritable}));
    out.U16(output.objectOffset);
    out.U16(output.absoluteObjectIndex);
    out.U16(0);
}

void Put(Bytes& out, Texts& texts, const ExportAttribute& attribute) {
    PutPoint(out, texts, attribute.name, attribute.logicalAddress, attribute.type,
             Flags({attribute.connected, attribute.permanent}));
    out.U16(0);
    out.U32(texts.Offset(attribute.value));
    out.U32(texts.Offset(attribute.enumDescription));
}

/// CRC-32 with the polynomial of Ethernet, 0x04C11DB7, bits reflected.
std::uint32_t Checksum(std::span<const std::uint8_t> bytes) {
    static const auto kTable = [] {
        std::array<std::uint32_t, 256> table{};
        for (std::uint32_t i = 0; i < table.size(); ++i) {
            std::uint32_t value = i;
            for (int bit = 0; bit < 8; ++bit) {
                value = (value & 1u) != 0 ? 0xEDB88320u ^ (value >> 1) : value >> 1;
            }
            table[i] = value;
        }
        return table;
    }();
    std::uint32_t sum = 0xFFFFFFFFu;
    for (const std::uint8_t byte : bytes) {
        sum = kTable[(sum ^ byte) & 0xFFu] ^ (sum >> 8);
    }
    return ~sum;
}

} // namespace

DatabaseSizes SizesOf(const ExportDocument& document) noexcept {
    DatabaseSizes sizes{kObjectConfiguration, 0};
    for (const ExportInput& input : document.inputs) {
        sizes.cdb += kInputConfiguration;
        sizes.ddb += input.type.length + kStatus;
    }
    for (const ExportOutput& output : document.outputs) {
        sizes.cdb += kOutputConfiguration;
        sizes.ddb += output.type.length + kStatus;
    }
    for (const ExportAttribute& attribute : document.attributes) {
        sizes.cdb += kAttributeConfiguration;
        (attribute.permanent ? sizes.cdb : sizes.ddb) += attribute.type.length;
    }
    return sizes;
}

std::vector<std::uint8_t> BuildImage(const ExportDocument& document) {
    const DatabaseSizes sizes = SizesOf(document);
    Texts texts;
    const std::uint32_t applicationId = texts.Offset(document.applicationId);
    const std::uint32_t deviceKey = texts.Offset(document.deviceKey);
    Bytes records;
    for (const ExportInput& input : document.inputs) {
        Put(records, texts, input);
    }
    for (const ExportOutput& output : document.outputs) {
        Put(records, texts, output);
    }
    for (const ExportAttribute& attribute : document.attributes) {
        Put(records, texts, attribute);
    }
    const std::size_t textsAt = kHeaderBytes + records.Size();

    Bytes image;
    image.Append(kMagic);
    image.U8(kVersion);
    image.U8(Flags({document.lastOnDevice}));
    image.U16(static_cast<std::uint16_t>(document.deviceAddress));
    image.U16(static_cast<std::uint16_t>(document.objectId));
    image.U16(static_cast<std::uint16_t>(document.inputs.size()));
    image.U16(static_cast<std::uint16_t>(document.outputs.size()));
    image.U16(static_cast<std::uint16_t>(document.attributes.size()));
    image.U32(static_cast<std::uint32_t>(textsAt + texts.Data().size() + kChecksumBytes));
    image.U32(static_cast<std::uint32_t>(textsAt));
    image.U32(applicationId);
    image.U32(deviceKey);
    image.U32(sizes.cdb);
    image.U32(sizes.ddb);
    image.Append(records.Data());
    image.Append(texts.Data());
    image.U32(Checksum(image.Data()));
    return image.Take();
}

std::wstring HexLines(std::span<const std::uint8_t> image) {
    constexpr std::wstring_view kDigits = L"0123456789ABCDEF";
    std::wstring text;
    text.reserve(image.size() * 2 + (image.size() / kBytesInLine + 1) * 2);
    for (std::size_t i = 0; i < image.size(); ++i) {
        text += kDigits[image[i] >> 4];
        text += kDigits[image[i] & 0x0F];
        if (i % kBytesInLine == kBytesInLine - 1 || i + 1 == image.size()) {
            text += L"\r\n";
        }
    }
    return text;
}

} // namespace orv
