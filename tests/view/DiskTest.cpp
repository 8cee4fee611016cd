// A file that changes on the disk while it is open.

#include "tests/view/Fixture.h"

#include <cstddef>
#include <string>

namespace viewtest {

namespace {

class DiskTest : public OpenedTest {
  protected:
    /// Writes the file with another value of its first attribute.
    void Rewrite(const std::string& value) {
        std::string text = BytesOf(file_);
        const std::size_t at = text.find("<VALUE>") + 7;
        text.replace(at, text.find('<', at) - at, value);
        FileWith(L"channels.xml", text);
    }
    std::wstring Value() const { return viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"); }
};

TEST_F(DiskTest, IsOfferedAgain) {
    Rewrite("88");
    const Box box = viewer_.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"channels.xml")) << Narrow(box.Text());
    box.Press(IDYES);
    Await("the new value", [&] { return viewer_.Count(IDC_ATTRIBUTES) == kAttributes && Value() == L"88"; });
    viewer_.Close();
}

TEST_F(DiskTest, IsOfferedOnceForEachChange) {
    Rewrite("88");
    viewer_.NextBox().Press(IDNO);
    EXPECT_EQ(L"1", Value());
    Sleep(2500); // longer than the window waits between two looks
    EXPECT_FALSE(viewer_.ShownBox());
    Rewrite("777");
    viewer_.NextBox().Press(IDYES);
    Await("the new value", [&] { return viewer_.Count(IDC_ATTRIBUTES) == kAttributes && Value() == L"777"; });
}

TEST_F(DiskTest, SaysThatUnsavedValuesWouldBeLost) {
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Setup", L"6");
    Rewrite("88");
    const Box box = viewer_.NextBox();
    EXPECT_NE(std::wstring::npos, box.Text().find(L"unsaved")) << Narrow(box.Text());
    box.Press(IDNO);
    EXPECT_EQ(L"6", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Setup"));
    EXPECT_TRUE(viewer_.IsEnabled(IDM_EDIT_UNDO));
}

TEST_F(DiskTest, AFileThatIsGoneStaysOpen) {
    DeleteFileW(file_.c_str());
    Sleep(2500);
    EXPECT_FALSE(viewer_.ShownBox());
    EXPECT_EQ(L"1", Value());
}

} // namespace

} // namespace viewtest
