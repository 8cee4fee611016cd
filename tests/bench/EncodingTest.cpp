// Streams in the encodings that XML declares.

#include "tests/bench/DeviceRun.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace benchtest {

namespace {

std::string Stream(const std::string& declared, const std::string& name) {
    return "<?xml version=\"1.0\"" + (declared.empty() ? "" : " encoding=\"" + declared + "\"") +
           "?>\n<Tam><Name>" + name +
           "</Name><DevKey>K9</DevKey><IsLastOnDev>1</IsLastOnDev><TamObjID>7</TamObjID>"
           "<Attributes><A><SNVTTYPE>105</SNVTTYPE><VALUE>1.5</VALUE></A></Attributes></Tam>";
}

/// Text of ASCII and the letter U+00F6, which is "~" in it, in UTF-16.
std::string Utf16(std::string_view text, bool isBigEndian) {
    std::string bytes;
    for (const char c : text) {
        const char low = c == '~' ? '\xF6' : c;
        bytes += isBigEndian ? std::string{'\0', low} : std::string{low, '\0'};
    }
    return bytes;
}

Json NameOf(const wchar_t* file, const std::string& bytes) {
    return Bench({L"inspect", WrittenFile(file, bytes)})["module"]["name"];
}

TEST(EncodingTest, ByteOrderMarksAreRead) {
    EXPECT_EQ("B\u00F6rse", NameOf(L"bom8.xml", "\xEF\xBB\xBF" + Stream("", "B\u00F6rse")));
    EXPECT_EQ("B\u00F6rse", NameOf(L"bom16.xml", "\xFF\xFE" + Utf16(Stream("UTF-16", "B~rse"), false)));
    EXPECT_EQ("B\u00F6rse", NameOf(L"bom16be.xml", "\xFE\xFF" + Utf16(Stream("UTF-16", "B~rse"), true)));
}

TEST(EncodingTest, DeclaredEncodingsAreRead) {
    EXPECT_EQ("B\u00F6rse", NameOf(L"utf8.xml", Stream("UTF-8", "B\u00F6rse")));
    EXPECT_EQ("B\u00F6rse", NameOf(L"latin1.xml", Stream("ISO-8859-1", "B\xF6rse")));
    EXPECT_EQ("\u20AC 5", NameOf(L"latin9.xml", Stream("iso-8859-15", "\xA4 5")));
    EXPECT_EQ("\u20AC 5", NameOf(L"windows.xml", Stream("windows-1252", "\x80 5")));
    EXPECT_EQ("\u0416", NameOf(L"cyrillic.xml", Stream("windows-1251", "\xC6")));
    EXPECT_EQ("\u0416", NameOf(L"koi8.xml", Stream("KOI8-R", "\xF6")));
    EXPECT_EQ("\u0416", NameOf(L"dos.xml", Stream("IBM866", "\x86")));
    EXPECT_EQ("\u0E01", NameOf(L"thai.xml", Stream("ISO-8859-11", "\xA1")));
    EXPECT_EQ("B\u00F6rse", NameOf(L"mac.xml", Stream("macintosh", "B\x9Arse")));
}

TEST(EncodingTest, AWrongByteIsNamedWithItsPlace) {
    const std::wstring file = WrittenFile(L"wrong_byte.xml", Stream("", "B\xF6rse"));
    const Json error = Bench({L"inspect", file}, 1)["error"];
    EXPECT_EQ("0x80070459", error["hresult"]);
    EXPECT_EQ(0U, error["description"].get<std::string>().find(Narrow(file) + ", line 2, column 13: "))
        << error["description"];
}

TEST(EncodingTest, AnEncodingUnderAnotherNameIsNamedAsItIsCalled) {
    const std::wstring file = WrittenFile(L"cp1252.xml", Stream("cp1252", "\x80 5"));
    const Json error = Bench({L"inspect", file}, 1)["error"];
    const std::string told = error["description"].get<std::string>();
    EXPECT_EQ(0U, told.find(Narrow(file) + ", line 1, column 31: there is no encoding \"cp1252\"")) << told;
    EXPECT_TRUE(told.ends_with("; did you mean WINDOWS-1252?")) << told;
}

TEST(EncodingTest, AStreamIsWrittenAsUtf8) {
    const std::wstring file = ScratchFolder() + L"from_latin1.xml";
    const std::wstring stream = WrittenFile(L"latin1_set.xml", Stream("ISO-8859-1", "B\xF6rse"));
    ASSERT_EQ(0U, RunBench({L"set", stream, L"A=2.5", L"-o", file}).status);
    std::string expected = Stream("UTF-8", "B\u00F6rse");
    expected.replace(expected.find("1.5"), 3, "2.5");
    EXPECT_EQ(expected, ReadFileBytes(file));
}

} // namespace

} // namespace benchtest
