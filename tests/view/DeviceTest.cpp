// A device: a module with its channels.

#include "tests/view/Fixture.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace viewtest {

namespace {

class DeviceTest : public ViewTest {
  protected:
    DeviceTest() : viewer_({benchtest::SamplesFolder() + L"device.xml"}) {
        AwaitAttributes(viewer_, kAttributes);
    }
    void Press(WORD key) const { SendMessageW(viewer_.Part(IDC_SHEET), WM_KEYDOWN, key, 1); }
    std::wstring Words() const { return viewer_.PartText(IDC_SHEET); }
    void Export(int command, const std::wstring& name) const {
        viewer_.Begin(command);
        viewer_.NextBox().ChooseFile(FileNamed(name));
        Await("the file", [&] {
            return IsFile(FileNamed(name)) &&
                   viewer_.Status(VIEW_STATUS_MESSAGE).find(name) != std::wstring::npos;
        });
    }
    Viewer viewer_;
};

TEST_F(DeviceTest, ItsSourceIsTheStreamAndItsFileIsCheckedToo) {
    if (!viewer_.IsTicked(IDM_VIEW_SOURCE)) {
        viewer_.Do(IDM_VIEW_SOURCE);
    }
    Await("the source", [&] { return !viewer_.PartText(IDC_SOURCE).empty(); });
    EXPECT_NE(std::wstring::npos, viewer_.PartText(IDC_SOURCE).find(L"<Tam"));
    EXPECT_EQ(L"Source: channels.xml", viewer_.PartText(IDC_SOURCE_TITLE)) << "whose text it is";
    const Texts messages = viewer_.Cells(IDC_FINDINGS, 2);
    const auto found = std::find_if(messages.begin(), messages.end(), [](const std::wstring& message) {
        return message.starts_with(L"device.xml:38:6: the version V3_00 has no library");
    });
    ASSERT_NE(messages.end(), found) << "what the checks say of the device file";
    const auto row = static_cast<int>(found - messages.begin());
    EXPECT_EQ(L"", viewer_.Cell(IDC_FINDINGS, row, 1)) << "the place is not the stream's";
}

TEST_F(DeviceTest, ArrowsGoToAChannelAndPickTheModulesItem) {
    viewer_.Do(IDM_VIEW_SHEET);
    Press(VK_DOWN);
    EXPECT_TRUE(Words().starts_with(L"input AO1_In1")) << Narrow(Words());
    Press(VK_RIGHT);
    EXPECT_TRUE(Words().starts_with(L"output ")) << Narrow(Words());
    const std::wstring ofModule = viewer_.PickedName(IDC_OUTPUTS);
    Press(VK_RIGHT);
    const std::size_t colon = Words().find(L": ");
    ASSERT_NE(std::wstring::npos, colon) << Narrow(Words());
    EXPECT_FALSE(Words().starts_with(L"output ")) << "it begins with the channel's name";
    EXPECT_NE(L"", viewer_.PickedName(IDC_OUTPUTS));
    EXPECT_EQ(IDC_SHEET, viewer_.Focus());
    Press(VK_LEFT);
    EXPECT_TRUE(Words().starts_with(L"output ")) << Narrow(Words());
    EXPECT_NE(L"", ofModule);
}

TEST_F(DeviceTest, IsSavedWithItsChannels) {
    const std::wstring project = FileNamed(L"hall.project.xml");
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
    viewer_.Begin(IDM_FILE_SAVE);
    viewer_.NextBox().ChooseFile(project);
    Await("the project", [&] { return viewer_.Title().find(L'*') == std::wstring::npos; });
    const std::string text = BytesOf(project);
    for (const char* name : {"<O_Tam_id", "<o_tam_ai_id", "<o_tam_do_id", "<Tam"}) {
        EXPECT_NE(std::string::npos, text.find(name)) << name << " in " << text;
    }
    Viewer other({project});
    AwaitAttributes(other, kAttributes);
    EXPECT_EQ(L"6", other.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
}

TEST_F(DeviceTest, IsExportedWithItsChannels) {
    for (const auto& [command, name] :
         {std::pair(IDM_FILE_EXPORT_SHEET, L"sheet.html"), {IDM_FILE_EXPORT_SVG, L"block.svg"}}) {
        Export(command, name);
        const std::string text = BytesOf(FileNamed(name));
        for (const char* channel : {"AI1", "AO1", "DI1", "DO1", "CTX1"}) {
            EXPECT_NE(std::string::npos, text.find(">" + std::string(channel) + "<"))
                << channel << " in " << Narrow(name);
        }
    }
}

} // namespace

} // namespace viewtest
