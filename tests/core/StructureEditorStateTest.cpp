#include "dialogs/StructureEditorState.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace tam {
namespace {

TEST(StructureEditorStateTest, FindsTheEditorOfAGeneralType) {
    EXPECT_EQ(EditorFor(L"SignedNumeric"), EditorKind::Numeric);
    EXPECT_EQ(EditorFor(L"UnsignedNumeric"), EditorKind::Numeric);
    EXPECT_EQ(EditorFor(L"Float"), EditorKind::Numeric);
    EXPECT_EQ(EditorFor(L"Textual"), EditorKind::Text);
    EXPECT_EQ(EditorFor(L"Enum"), EditorKind::Enumeration);
    EXPECT_EQ(EditorFor(L"Struct"), EditorKind::Structure);
    EXPECT_EQ(EditorFor(L"Bitfield"), EditorKind::BitField);
}

TEST(StructureEditorStateTest, FindsNoneForAnyOtherText) {
    for (const wchar_t* text : {L"", L"Invalid", L"enum", L"ENUM", L" Enum", L"Float "}) {
        EXPECT_EQ(EditorFor(text), EditorKind::None);
    }
}

} // namespace
} // namespace tam
