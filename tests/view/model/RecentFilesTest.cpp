#include "view/model/RecentFiles.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

using namespace view;

namespace {

using Texts = std::vector<std::wstring>;
using namespace std::string_view_literals;

TEST(RecentFilesTest, TheNewestIsFirst) {
    RecentFiles files;
    files.Add(L"C:\\a.xml");
    files.Add(L"C:\\b.xml");
    EXPECT_EQ((Texts{L"C:\\b.xml", L"C:\\a.xml"}), files.Files());
}

TEST(RecentFilesTest, AFileIsThereOnceInAnyLetterCase) {
    RecentFiles files;
    files.Add(L"C:\\a.xml");
    files.Add(L"C:\\b.xml");
    files.Add(L"c:\\A.XML");
    EXPECT_EQ((Texts{L"c:\\A.XML", L"C:\\b.xml"}), files.Files());
    files.Add(L"C:\\\u00C4.xml");
    files.Add(L"C:\\\u00E4.xml");
    EXPECT_EQ(3U, files.Files().size());
}

TEST(RecentFilesTest, KeepsTen) {
    RecentFiles files;
    for (int i = 1; i <= 12; ++i) {
        files.Add(L"C:\\" + std::to_wstring(i) + L".xml");
    }
    ASSERT_EQ(10U, files.Files().size());
    EXPECT_EQ(L"C:\\12.xml", files.Files().front());
    EXPECT_EQ(L"C:\\3.xml", files.Files().back());
}

TEST(RecentFilesTest, AFileCanBeTakenOut) {
    RecentFiles files;
    files.Add(L"C:\\a.xml");
    files.Add(L"C:\\b.xml");
    files.Remove(L"c:\\B.xml");
    files.Remove(L"C:\\none.xml");
    EXPECT_EQ((Texts{L"C:\\a.xml"}), files.Files());
    files.Clear();
    EXPECT_TRUE(files.Files().empty());
    files.Add(L"");
    EXPECT_TRUE(files.Files().empty());
}

TEST(RecentFilesTest, IsKeptAsSeveralTexts) {
    RecentFiles files;
    EXPECT_EQ(L"\0"sv, files.Text());
    files.Add(L"C:\\a.xml");
    files.Add(L"C:\\b.xml");
    EXPECT_EQ(L"C:\\b.xml\0C:\\a.xml\0\0"sv, files.Text());
    EXPECT_EQ(files.Files(), RecentFiles(files.Text()).Files());
}

TEST(RecentFilesTest, ReadsWhatAnotherHandWrote) {
    EXPECT_TRUE(RecentFiles(L""sv).Files().empty());
    EXPECT_TRUE(RecentFiles(L"\0\0\0"sv).Files().empty());
    EXPECT_EQ((Texts{L"a", L"b"}), RecentFiles(L"a\0\0b\0A\0b"sv).Files()) << "the newer one of two stays";
    std::wstring many;
    for (int i = 0; i < 30; ++i) {
        (many += std::to_wstring(i)) += L'\0';
    }
    ASSERT_EQ(10U, RecentFiles(many).Files().size());
    EXPECT_EQ(L"0", RecentFiles(many).Files().front());
    EXPECT_EQ(L"9", RecentFiles(many).Files().back());
}

} // namespace
