#include "tests/host/Compiling.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace hosttest {

namespace {

using Bytes = std::vector<std::uint8_t>;

/// The bytes of an image text; checks its form.
Bytes BytesOf(const std::wstring& text) {
    constexpr std::wstring_view kDigits = L"0123456789ABCDEF";
    Bytes bytes;
    std::wstring_view rest = text;
    while (!rest.empty()) {
        const std::size_t end = rest.find(L"\r\n");
        EXPECT_NE(std::wstring_view::npos, end) << "a line without end";
        if (end == std::wstring_view::npos) {
            break;
        }
        const std::wstring_view line = rest.substr(0, end);
        rest.remove_prefix(end + 2);
        EXPECT_TRUE(line.size() == 64 ||
                    (rest.empty() && line.size() % 2 == 0 && !line.empty() && line.size() < 64));
        for (std::size_t i = 0; i + 1 < line.size(); i += 2) {
            const std::size_t high = kDigits.find(line[i]);
            const std::size_t low = kDigits.find(line[i + 1]);
            EXPECT_TRUE(high < 16 && low < 16) << "no hexadecimal digit";
            bytes.push_back(static_cast<std::uint8_t>(high * 16 + low));
        }
    }
    return bytes;
}

/// CRC-32 straight from its definition, bit by bit.
std::uint32_t Checksum(const Bytes& bytes, std::size_t count) {
    std::uint32_t sum = 0xFFFFFFFF;
    for (std::size_t i = 0; i < count; ++i) {
        sum ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
        }
    }
    return ~sum;
}

std::uint32_t U32(const Bytes& bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4 && at + i < bytes.size(); ++i) {
        value |= static_cast<std::uint32_t>(bytes[at + i]) << (8 * i);
    }
    return value;
}

TEST(ImageTest, LaysOutAnObjectByteByByte) {
    const std::wstring document = Document(
        L"<I1 LinkReference=\"X_1\" LogicalAddress=\"258\" SNVTType=\"105\" isPermanent=\"1\" "
        L"IsConnected=\"1\"/>",
        L"<O1 LogicalAddress=\"2\" SNVTType=\"81\" isMapAsOO=\"1\" ObjOffset=\"3\" AbsoluteObjectIndex=\"4\" "
        L"IsConnected=\"0\" IsWritable=\"1\" DisplayWritable=\"1\"/>",
        L"<G LogicalAddress=\"\" SNVTType=\"\" Value=\"\u00E9\" isPermanent=\"0\" IsConnected=\"0\" "
        L"EnumDesc=\"0,a;\"/>");
    const Bytes expected{
        // header: "OTIM", version 1, last on device, address 12, object 3, one point of each kind
        0x4F, 0x54, 0x49, 0x4D, 0x01, 0x01, 0x0C, 0x00, 0x03, 0x00, 0x01, 0x00, 0x01, 0x00, 0x01, 0x00,
        // length 40 + 20 + 20 + 24 + 44 + 4 = 152, texts at 104, AppID at 2, DevKey at 5
        0x98, 0x00, 0x00, 0x00, 0x68, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x05, 0x00, 0x00, 0x00,
        // CDB 16 + 8 + 10 + 6 = 40, DDB (2 + 1) + (2 + 1) + 1 = 7
        0x28, 0x00, 0x00, 0x00, 0x07, 0x00, 0x00, 0x00,
        // input: name at 9, type text at 13, address 258, type 105, 2 bytes, connected and permanent
        0x09, 0x00, 0x00, 0x00, 0x0D, 0x00, 0x00, 0x00, 0x02, 0x01, 0x69, 0x00, 0x02, 0x03,
        // nothing, link reference at 18
        0x00, 0x00, 0x12, 0x00, 0x00, 0x00,
        // output: name at 23, type text at 27, address 2, type 81, 2 bytes, mapped, writable, in displays too
        0x17, 0x00, 0x00, 0x00, 0x1B, 0x00, 0x00, 0x00, 0x02, 0x00, 0x51, 0x00, 0x02, 0x0E,
        // object offset 3, absolute index 4, nothing
        0x03, 0x00, 0x04, 0x00, 0x00, 0x00,
        // attribute: name at 31, empty type, no address, no type, 1 byte, no flags
        0x1F, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01, 0x00,
        // nothing, value at 34, enumeration at 38
        0x00, 0x00, 0x22, 0x00, 0x00, 0x00, 0x26, 0x00, 0x00, 0x00,
        // texts: "", "A", "K7", "I1", "105", "X_1", "O1", "81", "G", e with acute accent, "0,a;"
        0x00, 0x00, 0x01, 0x00, 0x41, 0x02, 0x00, 0x4B, 0x37, 0x02, 0x00, 0x49, 0x31, 0x03, 0x00, 0x31, 0x30,
        0x35, 0x03, 0x00, 0x58, 0x5F, 0x31, 0x02, 0x00, 0x4F, 0x31, 0x02, 0x00, 0x38, 0x31, 0x01, 0x00, 0x47,
        0x02, 0x00, 0xC3, 0xA9, 0x04, 0x00, 0x30, 0x2C, 0x61, 0x3B};
    const Bytes image = BytesOf(Compiler().Compile(document).stream);
    ASSERT_EQ(expected.size() + 4, image.size());
    EXPECT_EQ(expected, Bytes(image.begin(), image.end() - 4));
    EXPECT_EQ(Checksum(image, image.size() - 4), U32(image, image.size() - 4));
}

TEST(ImageTest, WritesCharactersOfThreeAndFourBytes) {
    const std::wstring document =
        Document({}, {},
                 L"<G LogicalAddress=\"\" SNVTType=\"\" Value=\"\u20AC\U0001F600\" isPermanent=\"0\" "
                 L"IsConnected=\"0\" EnumDesc=\"\"/>");
    const Bytes image = BytesOf(Compiler().Compile(document).stream);
    const Bytes text{0x07, 0x00, 0xE2, 0x82, 0xAC, 0xF0, 0x9F, 0x98, 0x80};
    EXPECT_FALSE(std::ranges::search(image, text).empty());
}

TEST(ImageTest, TellsAConnectedInputFromAPermanentOne) {
    // The first input stands after the header of 40 bytes, its flags 13 bytes on.
    constexpr std::size_t kFlags = 53;
    const auto flags = [](const wchar_t* permanent, const wchar_t* connected) {
        const Bytes image =
            BytesOf(Compiler()
                        .Compile(Document(
                            L"<I1 LinkReference=\"\" LogicalAddress=\"\" SNVTType=\"105\" isPermanent=\"" +
                            std::wstring(permanent) + L"\" IsConnected=\"" + connected + L"\"/>"))
                        .stream);
        return image.at(kFlags);
    };
    EXPECT_EQ(flags(L"0", L"1"), 1);
    EXPECT_EQ(flags(L"1", L"0"), 2);
    EXPECT_EQ(flags(L"0", L"0"), 0);
}

TEST(ImageTest, HasTheChecksumOfTheStandard) {
    // The published check value of this checksum, so that the one above is right.
    const Bytes digits{'1', '2', '3', '4', '5', '6', '7', '8', '9'};
    EXPECT_EQ(0xCBF43926u, Checksum(digits, digits.size()));
}

TEST(ImageTest, LaysOutAnEmptyObject) {
    const std::wstring document =
        L"<O_Tam_id DevAddr=\"\" AppID=\"\" DevKey=\"\" TamObjectID=\"-1\" IsLastOnDev=\"0\">"
        L"<Inputs/><Outputs/><Attributes/></O_Tam_id>";
    const auto result = Compiler().Compile(document);
    EXPECT_EQ(L"16", result.cdb);
    EXPECT_EQ(L"0", result.ddb);
    const Bytes image = BytesOf(result.stream);
    // header, the empty text, checksum
    ASSERT_EQ(40u + 2u + 4u, image.size());
    EXPECT_EQ(46u, U32(image, 16));
    EXPECT_EQ(40u, U32(image, 20));
    EXPECT_EQ((Bytes{0x00, 0x00, 0x00, 0xFF, 0xFF}), Bytes(image.begin() + 5, image.begin() + 10));
}

TEST(ImageTest, IsTheSameEachTime) {
    const std::wstring document =
        Document(Input(L"105") + Input(L"81"), Output(L"95"), Attribute(L"39", L"1"));
    EXPECT_EQ(Compiler().Compile(document).stream, Compiler().Compile(document).stream);
}

TEST(ImageTest, CountsSizesByTheTypesOfThePoints) {
    const struct {
        std::wstring document;
        const wchar_t* cdb;
        const wchar_t* ddb;
    } cases[] = {
        {Document({}), L"16", L"0"},
        {Document(Input(L"105")), L"24", L"3"},                  // 16 + 8, 2 + 1
        {Document(Input(L"SNVT_temp_p")), L"24", L"3"},          // by name
        {Document({}, Output(L"21")), L"26", L"2"},              // 16 + 10, 1 + 1
        {Document({}, Output(L"36")), L"26", L"32"},             // a text of 31 bytes
        {Document({}, {}, Attribute(L"48", L"1")), L"26", L"0"}, // 16 + 6 + 4
        {Document({}, {}, Attribute(L"48", L"0")), L"22", L"4"}, // 16 + 6, 4
        {Document({}, {}, Attribute(L"48", L"")), L"22", L"4"},
        {Document(Input(L"")), L"24", L"2"},     // an enumeration of its own: 1 + 1
        {Document(Input(L"9999")), L"24", L"5"}, // not in the table: 4 + 1
        {Document(Input(L"215")), L"24", L"5"},  // in the table, length not stated
        {Document(Input(L"105") + Input(L"81") + Input(L"95"), Output(L"165") + Output(L"146"),
                  Attribute(L"81", L"1") + Attribute(L"81", L"0")),
         L"74", L"25"}, // 16 + 3*8 + 2*10 + 2*6 + 2, 3*(2+1) + (8+1) + (4+1) + 2
    };
    for (const auto& expected : cases) {
        const auto result = Compiler().Compile(expected.document);
        EXPECT_EQ(expected.cdb, result.cdb) << expected.document;
        EXPECT_EQ(expected.ddb, result.ddb) << expected.document;
    }
}

TEST(ImageTest, CompilesAsManyPointsAsTheFormatHolds) {
    std::wstring inputs;
    for (int i = 0; i < 65535; ++i) {
        inputs += Input(L"105");
    }
    Compiler compiler;
    const auto result = compiler.Compile(Document(inputs));
    EXPECT_EQ(L"524296", result.cdb); // 16 + 65535 * 8
    EXPECT_EQ(L"196605", result.ddb); // 65535 * 3
    EXPECT_TRUE(compiler.Refusal(Document(inputs + Input(L"105")))
                    .ends_with(L"\"Inputs\" holds more than 65535 points"));
}

} // namespace

} // namespace hosttest
