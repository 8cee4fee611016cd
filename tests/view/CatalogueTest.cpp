// The page of the catalogue's types.

#include "tests/view/Fixture.h"

#include <string>

namespace viewtest {

namespace {

class CatalogueTest : public OpenedTest {
  protected:
    void SetUp() override { viewer_.Do(IDM_VIEW_CATALOGUE); }
};

TEST_F(CatalogueTest, ListsEachType) {
    EXPECT_EQ(221, viewer_.Count(IDC_CATALOGUE));
}

TEST_F(CatalogueTest, FindsATypeByNumberAndByName) {
    viewer_.Filter(L"temp_diff_p");
    ASSERT_EQ(1, viewer_.Count(IDC_CATALOGUE));
    EXPECT_EQ(L"147", viewer_.Cell(IDC_CATALOGUE, 0, 0));
    EXPECT_NE(std::wstring::npos, viewer_.Cell(IDC_CATALOGUE, 0, 1).find(L"temp_diff_p"));
    viewer_.Filter(L"147");
    const int count = viewer_.Count(IDC_CATALOGUE);
    EXPECT_GE(count, 1);
    EXPECT_LT(count, 221);
    for (int place = 0; place < count; ++place) {
        bool has = false;
        for (int column = 0; column < 8; ++column) {
            has = has || viewer_.Cell(IDC_CATALOGUE, place, column).find(L"147") != std::wstring::npos;
        }
        EXPECT_TRUE(has) << Narrow(viewer_.Cell(IDC_CATALOGUE, place, 1));
    }
}

TEST_F(CatalogueTest, SortsItsNumbersAsNumbers) {
    viewer_.ClickHeading(IDC_CATALOGUE, 0);
    Await("numbers upward", [&] { return viewer_.Cell(IDC_CATALOGUE, 0, 0) == L"1"; });
    int before = 0;
    for (const std::wstring& number : viewer_.Cells(IDC_CATALOGUE, 0)) {
        EXPECT_LT(before, std::stoi(number));
        before = std::stoi(number);
    }
}

TEST_F(CatalogueTest, HasNoValueToEdit) {
    viewer_.Pick(IDC_CATALOGUE, 0);
    viewer_.Do(IDM_EDIT_VALUE);
    viewer_.Do(IDM_EDIT_CELL);
    EXPECT_FALSE(viewer_.ShownBox());
    EXPECT_EQ(nullptr, GetDlgItem(viewer_.Part(IDC_CATALOGUE), IDC_CELL));
}

} // namespace

} // namespace viewtest
