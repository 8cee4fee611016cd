#include "core/RunTimeError.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace tam {
namespace {

TEST(RunTimeErrorTest, GivesClassicErrorsTheirCodeNumberAndText) {
    struct Row {
        RunTime number;
        std::uint32_t code;
        const wchar_t* text;
    };
    const Row rows[] = {
        {RunTime::InvalidCall, 0x800A0005u, L"Invalid procedure call or argument"},
        {RunTime::Overflow, 0x800A0006u, L"Overflow"},
        {RunTime::Subscript, 0x800A0009u, L"Subscript out of range"},
        {RunTime::TypeMismatch, 0x800A000Du, L"Type mismatch"},
        {RunTime::ObjectNotSet, 0x800A005Bu, L"Object variable or With block variable not set"},
        {RunTime::DuplicateKey, 0x800A01C9u,
         L"This key is already associated with an element of this collection"},
    };
    for (const Row& row : rows) {
        const RunTimeError error(row.number);
        EXPECT_EQ(static_cast<std::uint32_t>(error.Code()), row.code);
        EXPECT_EQ(error.Number(), static_cast<std::int32_t>(row.number));
        EXPECT_EQ(error.Description(), row.text);
        EXPECT_EQ(error.Source(), L"");
    }
}

TEST(RunTimeErrorTest, GivesAnyOtherNumberTheGeneralText) {
    EXPECT_EQ(StandardText(static_cast<RunTime>(1000)), L"Application-defined or object-defined error");
}

TEST(RunTimeErrorTest, KeepsAnErrorOfTheComponentsOwnRange) {
    const auto code = static_cast<std::int32_t>(0x80040201u);
    const RunTimeError error(code, L"O_Tam_id", L"no file");
    EXPECT_EQ(error.Code(), code);
    EXPECT_EQ(error.Number(), code);
    EXPECT_EQ(error.Source(), L"O_Tam_id");
    EXPECT_EQ(error.Description(), L"no file");
}

} // namespace
} // namespace tam
