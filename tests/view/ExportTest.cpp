// What the window writes for others.

#include "tests/view/Fixture.h"

#include <cmath>
#include <cstddef>
#include <string>

namespace viewtest {

namespace {

class ExportTest : public OpenedTest {
  protected:
    /// The bytes of what an entry of the menu writes.
    std::string Exported(int command, const std::wstring& name) {
        const std::wstring path = FileNamed(name);
        viewer_.Begin(command);
        viewer_.NextBox().ChooseFile(path);
        Await("the file " + Narrow(name), [&] {
            return IsFile(path) && viewer_.Status(VIEW_STATUS_MESSAGE).find(name) != std::wstring::npos;
        });
        EXPECT_FALSE(viewer_.ShownBox());
        return IsFile(path) ? BytesOf(path) : std::string();
    }
};

std::size_t NumberAt(const std::string& bytes, std::size_t at) {
    std::size_t number = 0;
    for (std::size_t i = at; i < at + 4; ++i) {
        number = number * 256 + static_cast<unsigned char>(bytes.at(i));
    }
    return number;
}

TEST_F(ExportTest, TheImageIsTheCompilers) {
    const std::string image = Exported(IDM_FILE_EXPORT_IMAGE, L"image.txt");
    const std::wstring path = FileNamed(L"bench.txt");
    ASSERT_EQ(0U, benchtest::RunBench({L"export", file_, L"--wire", L"-o", path}).status);
    EXPECT_TRUE(image.starts_with("4F54494D")) << image; // the image's first four letters
    EXPECT_EQ(BytesOf(path), image);
}

TEST_F(ExportTest, TheInteroperabilityElementNamesEachPoint) {
    const std::string element = Exported(IDM_FILE_EXPORT_INTEROP, L"interop.xml");
    for (const char* name : {"<AO1_In1", "<AI1_Out", "<AI1_Offset"}) {
        EXPECT_NE(std::string::npos, element.find(name)) << name << " in " << element;
    }
}

TEST_F(ExportTest, TheDataSheetIsAPage) {
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Offset", L"4");
    const std::string page = Exported(IDM_FILE_EXPORT_SHEET, L"sheet.html");
    EXPECT_TRUE(page.starts_with("<!DOCTYPE html>")) << page.substr(0, 100);
    EXPECT_NE(std::string::npos, page.find("Reading room"));
    EXPECT_NE(std::string::npos, page.find("4 \xC2\xB0\x43")) << "with the value as it is now";
}

TEST_F(ExportTest, TheBlockIsADrawing) {
    const std::string svg = Exported(IDM_FILE_EXPORT_SVG, L"block.svg");
    EXPECT_NE(std::string::npos, svg.find("<svg"));
    EXPECT_NE(std::string::npos, svg.find("AO1_In1"));
}

TEST_F(ExportTest, TheBlockIsAPicture) {
    const std::string png = Exported(IDM_FILE_EXPORT_PNG, L"block.png");
    ASSERT_GT(png.size(), 1000U);
    EXPECT_EQ("\x89PNG\r\n\x1A\n", png.substr(0, 8));
    EXPECT_EQ("IHDR", png.substr(12, 4));
    // Twice as many pixels as the drawing has units, either way.
    const std::string svg = Exported(IDM_FILE_EXPORT_SVG, L"block.svg");
    const auto doubled = [&svg](const std::string& attribute) {
        const std::size_t at = svg.find(" " + attribute + "=\"", svg.find("<svg"));
        return static_cast<std::size_t>(std::ceil(std::stod(svg.substr(at + attribute.size() + 3)) * 2));
    };
    EXPECT_EQ(doubled("width"), NumberAt(png, 16));
    EXPECT_EQ(doubled("height"), NumberAt(png, 20));
    EXPECT_EQ("IEND", png.substr(png.size() - 8, 4));
}

TEST_F(ExportTest, WhoCancelsGetsNoFile) {
    viewer_.Begin(IDM_FILE_EXPORT_SVG);
    viewer_.NextBox().Press(IDCANCEL);
    viewer_.Settle();
    EXPECT_FALSE(viewer_.ShownBox());
    EXPECT_FALSE(viewer_.Title().find(L'*') != std::wstring::npos);
}

} // namespace

} // namespace viewtest
