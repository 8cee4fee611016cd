#include "tests/appobject/Module.h"

#include "com/LateBound.h"
#include "common/resource.h"

#include <span>
#include <string>
#include <vector>

using namespace support;
using namespace modules;

namespace {

std::wstring ControlText(HWND window, int control) {
    wchar_t text[1024] = {};
    GetDlgItemTextW(window, control, text, 1024);
    return text;
}

bool Shown(HWND window, int control) {
    return (GetWindowLongW(GetDlgItem(window, control), GWL_STYLE) & WS_VISIBLE) != 0;
}

class CDBAppObjectDialogsReportTest : public ModuleTest {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        broken = NewModule();
    }
    void TearDown() override {
        broken.Reset();
        ModuleTest::TearDown();
    }
    /// Raises "object not set" in a member that traps.
    void Raise() { EXPECT_EQ(broken->XmlLoad(nullptr), S_OK); }

    com::Ref<IAppObject> broken;
};

TEST_F(CDBAppObjectDialogsReportTest, ShowsTheReport) {
    Raise();
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    const auto& controls = boxes[0].controls;
    EXPECT_EQ(boxes[0].caption, L"Gateway Object - Error report");
    EXPECT_EQ(controls.at(IDC_ERROR_LINE1), L"The application has reported the following error:");
    EXPECT_EQ(controls.at(IDC_ERROR_DESCRIPTION), kObjectNotSetText);
    EXPECT_EQ(controls.at(IDC_ERROR_ADVANCED), L"Advanced Information  > >");
    EXPECT_EQ(controls.at(IDC_ERROR_ADVANCED_INFO), L"* Source application (Err.Source): \r\n"
                                                    L"  O_Tam_id\r\n"
                                                    L"* Calling object (Me.Name or module name): \r\n"
                                                    L"  O_Tam_id Class Module CDBAppObject\r\n"
                                                    L"* Calling function: \r\n"
                                                    L"  Sub IAppObject_XmlLoad");
}

TEST_F(CDBAppObjectDialogsReportTest, HasTwoReadOnlyTextsOfSeveralLines) {
    Watcher().OnBox([](HWND window, const bench::Box&) {
        for (const int control : {IDC_ERROR_DESCRIPTION, IDC_ERROR_ADVANCED_INFO}) {
            const LONG style = GetWindowLongW(GetDlgItem(window, control), GWL_STYLE);
            EXPECT_NE(style & ES_READONLY, 0);
            EXPECT_NE(style & ES_MULTILINE, 0);
        }
        return false;
    });
    Raise();
    EXPECT_EQ(Boxes().size(), 1u);
}

TEST_F(CDBAppObjectDialogsReportTest, OpensAndClosesTheAdvancedPart) {
    Watcher().OnBox([](HWND window, const bench::Box&) {
        EXPECT_FALSE(Shown(window, IDC_ERROR_ADVANCED_INFO));
        RECT folded{};
        GetWindowRect(window, &folded);
        SendMessageW(window, WM_COMMAND, IDC_ERROR_ADVANCED, 0);
        EXPECT_TRUE(Shown(window, IDC_ERROR_ADVANCED_INFO));
        EXPECT_EQ(ControlText(window, IDC_ERROR_ADVANCED), L"Advanced Information  < <");
        RECT open{};
        GetWindowRect(window, &open);
        EXPECT_GT(open.bottom - open.top, folded.bottom - folded.top);
        SendMessageW(window, WM_COMMAND, IDC_ERROR_ADVANCED, 0);
        EXPECT_FALSE(Shown(window, IDC_ERROR_ADVANCED_INFO));
        EXPECT_EQ(ControlText(window, IDC_ERROR_ADVANCED), L"Advanced Information  > >");
        return false;
    });
    Raise();
    EXPECT_EQ(Boxes().size(), 1u);
}

TEST_F(CDBAppObjectDialogsReportTest, IsOneReportForOneFault) {
    Raise();
    Raise();
    EXPECT_EQ(Boxes().size(), 2u);
}

TEST_F(CDBAppObjectDialogsReportTest, LetsTheMemberReturnNormally) {
    const auto module = NewModule();
    LoadProject(module, L"<Valve><UserName>Mine</UserName><DevKey/></Valve>");
    EXPECT_EQ(LastError().description, L"") << "what was reported is not handed to the host too";
    LoadProject(module, L"<Valve><DevKey>D1</DevKey></Valve>");
    EXPECT_EQ(Text(module.As<ITamObject>(), &ITamObject::get_DeviceKey), L"D1");
    EXPECT_EQ(Boxes().size(), 1u);
}

TEST_F(CDBAppObjectDialogsReportTest, ReportsAFailureByNameInTheSameWay) {
    VARIANT none{};
    none.vt = VT_DISPATCH;
    com::CallMember(*broken.Get(), L"XmlLoad", std::span<VARIANT>(&none, 1));
    ExpectOneReport(kObjectNotSetText, kLocation, L"Sub IAppObject_XmlLoad");
}

class CDBAppObjectDialogsAboutTest : public ModuleTest {};

TEST_F(CDBAppObjectDialogsAboutTest, ShowsTitleAndVersion) {
    EXPECT_EQ(NewModule().As<ITamDialogs>()->ShowAbout(), S_OK);
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_FALSE(boxes[0].isMessageBox);
    EXPECT_EQ(boxes[0].caption, L"About Gateway Object");
    EXPECT_EQ(boxes[0].controls.at(IDC_ABOUT_TITLE), L"Gateway Object");
    EXPECT_EQ(boxes[0].controls.at(IDC_ABOUT_VERSION), L"Version 1.0.0");
    EXPECT_EQ(boxes[0].buttons, std::vector<std::wstring>{L"OK"});
}

TEST_F(CDBAppObjectDialogsAboutTest, ShowsTheLogo) {
    Watcher().OnBox([](HWND window, const bench::Box&) {
        EXPECT_NE(SendDlgItemMessageW(window, IDC_ABOUT_LOGO, STM_GETICON, 0, 0), 0);
        return false;
    });
    EXPECT_EQ(NewModule().As<ITamDialogs>()->ShowAbout(), S_OK);
    EXPECT_EQ(Boxes().size(), 1u);
}

TEST_F(CDBAppObjectDialogsAboutTest, OpensByName) {
    com::CallMember(*NewModule().Get(), L"ShowAbout", {});
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].caption, L"About Gateway Object");
}

} // namespace
