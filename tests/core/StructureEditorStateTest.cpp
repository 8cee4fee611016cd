#include "core/StructureEditorState.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

namespace tam {
namespace {

TEST(StructureEditorStateTest, FindsTheEditorOfAGeneralType) {
    EXPECT_EQ(EditorFor(GeneralTypeOf(L"SignedNumeric")), EditorKind::Numeric);
    EXPECT_EQ(EditorFor(GeneralTypeOf(L"UnsignedNumeric")), EditorKind::Numeric);
    EXPECT_EQ(EditorFor(GeneralTypeOf(L"Float")), EditorKind::Numeric);
    EXPECT_EQ(EditorFor(GeneralTypeOf(L"Textual")), EditorKind::Text);
    EXPECT_EQ(EditorFor(GeneralTypeOf(L"Enum")), EditorKind::Enumeration);
    EXPECT_EQ(EditorFor(GeneralTypeOf(L"Struct")), EditorKind::Structure);
    EXPECT_EQ(EditorFor(GeneralTypeOf(L"Bitfield")), EditorKind::BitField);
}

TEST(StructureEditorStateTest, FindsNoneForAnyOtherText) {
    for (const wchar_t* text : {L"", L"Invalid", L"enum", L"ENUM", L" Enum", L"Float "}) {
        EXPECT_EQ(EditorFor(GeneralTypeOf(text)), EditorKind::None);
    }
}

TEST(StructureEditorStateTest, AColumnHasTheWidthThatItWantsAndTheLastTheRest) {
    EXPECT_EQ(ColumnWidths({50, 20, 30, 40}, 200), (std::vector<int>{50, 20, 30, 100}));
    EXPECT_EQ(ColumnWidths({50, 20, 30, 40}, 140), (std::vector<int>{50, 20, 30, 40}));
    EXPECT_TRUE(ColumnWidths({}, 100).empty());
}

TEST(StructureEditorStateTest, TheWidestColumnsAreNarrowedWhereTheyDoNotFit) {
    EXPECT_EQ(ColumnWidths({300, 20, 30, 250}, 250), (std::vector<int>{100, 20, 30, 100}));
    EXPECT_EQ(ColumnWidths({300, 20, 30, 60}, 250), (std::vector<int>{140, 20, 30, 60}));
    EXPECT_EQ(ColumnWidths({90, 90, 90}, 100), (std::vector<int>{33, 33, 34}));
    EXPECT_EQ(ColumnWidths({90, 90}, 0), (std::vector<int>{0, 0}));
}

TEST(StructureEditorStateTest, ARowThatDoesNotFitIsCutThrough) {
    EXPECT_EQ(CutRowHeight(180, 18), 0);
    EXPECT_EQ(CutRowHeight(185, 18), 5);
    EXPECT_EQ(CutRowHeight(197, 18), 17);
    EXPECT_EQ(CutRowHeight(10, 18), 10);
    EXPECT_EQ(CutRowHeight(-3, 18), 0);
    EXPECT_EQ(CutRowHeight(100, 0), 0);
}

} // namespace
} // namespace tam
