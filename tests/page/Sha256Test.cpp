#include "page/Sha256.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace pagetest {

namespace {

std::string HexOf(std::string_view bytes) {
    constexpr const char* kDigits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : page::Sha256(bytes)) {
        text += kDigits[byte >> 4U];
        text += kDigits[byte & 0xFU];
    }
    return text;
}

// The examples of the standard, and lengths around the end of a block.
TEST(Sha256Test, MatchesTheExamplesOfTheStandard) {
    EXPECT_EQ("e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855", HexOf(""));
    EXPECT_EQ("ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad", HexOf("abc"));
    EXPECT_EQ("248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1",
              HexOf("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"));
    EXPECT_EQ("cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0",
              HexOf(std::string(1000000, 'a')));
}

TEST(Sha256Test, PadsTextsOfEveryLength) {
    EXPECT_EQ("9f4390f8d30c2dd92ec9f095b65e2b9ae9b0a925a5258e241c9f1e910f734318",
              HexOf(std::string(55, 'a')));
    EXPECT_EQ("b35439a4ac6f0948b6d6f9e3c6af0f5f590ce20f1bde7090ef7970686ec6738a",
              HexOf(std::string(56, 'a')));
    EXPECT_EQ("ffe054fe7ae0cb6dc65c3af9b61d5209f439851db43d0ba5997337df154668eb",
              HexOf(std::string(64, 'a')));
}

} // namespace

} // namespace pagetest
