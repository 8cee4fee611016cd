#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"

#include <string>
#include <string_view>
#include <vector>

namespace dialogs {
namespace {

using Texts = std::vector<std::wstring>;

/// The texts of a dialog's controls, in the order in which a screen reader
/// meets them; a place for what the user fills stands as its class.
Texts ControlsOf(const Shown& dialog) {
    Texts texts;
    for (HWND child = GetWindow(dialog.Window(), GW_CHILD); child != nullptr;
         child = GetWindow(child, GW_HWNDNEXT)) {
        wchar_t kind[32] = {};
        wchar_t text[128] = {};
        GetClassNameW(child, kind, 32);
        GetWindowTextW(child, text, 128);
        const std::wstring name = kind;
        texts.push_back(name == L"Static" || name == L"Button" ? text : name);
    }
    return texts;
}

class LabelsTest : public DialogTest {
  protected:
    /// The controls of the editor of a type that shows a value.
    Texts ControlsFor(const wchar_t* type, const std::wstring& value) {
        Texts texts;
        Edit(Attribute(type, value), [&](Shown& dialog) {
            texts = ControlsOf(dialog);
            dialog.Click(IDCANCEL);
        });
        return texts;
    }
};

TEST_F(LabelsTest, ANumberStandsAfterItsLimits) {
    EXPECT_EQ(
        ControlsFor(kUnsigned, L"7"),
        (Texts{L"Point", L"Type:", L"SNVT_count", L"Minimum:", L"0", L"Maximum:", L"250", L"Current value:",
               L"7", L"&New value:", L"Edit", L"", L"&Invalid value", L"OK", L"&Cancel"}));
}

TEST_F(LabelsTest, ATextStandsAfterItsLength) {
    EXPECT_EQ(ControlsFor(kText, L"hall"),
              (Texts{L"Point", L"Type:", L"SNVT_str", L"Length:", L"8 characters at most", L"&New value:",
                     L"Edit", L"OK", L"&Cancel"}));
}

TEST_F(LabelsTest, AnEnumerationStandsAfterItsType) {
    EXPECT_EQ(ControlsFor(kEnum, L"0"), (Texts{L"Point", L"Type:", L"SNVT_switch_state", L"Current value:",
                                               L"0", L"&New value:", L"ComboBox", L"OK", L"&Cancel"}));
}

TEST_F(LabelsTest, BitsStandAfterTheirNumbers) {
    const Texts upper{L"Bit 15", L"Bit 14", L"Bit 13", L"Bit 12", L"Bit 11", L"Bit 10", L"Bit 9", L"Bit 8"};
    const Texts lower{L"Bit 7", L"Bit 6", L"Bit 5", L"Bit 4", L"Bit 3", L"Bit 2", L"Bit 1", L"Bit 0"};
    Texts expected{L"Point", L"Type:", L"SNVT_state"};
    expected.insert(expected.end(), upper.begin(), upper.end());
    expected.insert(expected.end(), {L"0", L"0", L"0", L"0", L"0", L"0", L"0", L"1"});
    expected.insert(expected.end(), lower.begin(), lower.end());
    expected.insert(expected.end(), {L"1", L"0", L"0", L"0", L"0", L"0", L"0", L"0"});
    expected.insert(expected.end(),
                    {L"Value:", L"384 (0x0180)", L"Double-click a bit, or press the space bar, to flip it.",
                     L"OK", L"&Cancel"});
    EXPECT_EQ(ControlsFor(kBits16, L"384"), expected);
}

TEST_F(LabelsTest, FieldsStandAfterWhatIsDoneWithThem) {
    HostPoint field(L"Speed", L"40", L"UnsignedNumeric");
    HostPoint structure(L"Setpoints", L"whole", L"Struct");
    structure.SetFields({&field});
    Next([](Shown& dialog) {
        EXPECT_EQ(ControlsOf(dialog), (Texts{L"Setpoints", L"&Fields (double-click one to edit it):",
                                             L"SysListView32", L"&Edit...", L"OK", L"&Cancel"}));
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(NewModule().As<ITamDialogs>()->EditValue(structure.object.Get()), S_OK);
}

TEST_F(LabelsTest, ADevicesNameStandsAfterItsLabel) {
    const com::Variant name(std::wstring_view(L"Dev1"));
    VARIANT argument = name.Get(); // borrowed: Cancel leaves it
    short choice = 0;
    Next([](Shown& dialog) {
        EXPECT_EQ(ControlsOf(dialog), (Texts{L" Device Name", L"Edit", L"&OK", L"&Cancel"}));
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(NewModule().As<ITamDialogs>()->ShowRename(&argument, nullptr, &choice), S_OK);
}

TEST_F(LabelsTest, AnErrorsDetailsStandAfterTheButtonThatShowsThem) {
    const auto point = Attribute(kSigned, L"1").As<_CDBAttribute>();
    Next([](Shown& dialog) {
        EXPECT_EQ(ControlsOf(dialog),
                  (Texts{L"", L"Gateway Object", L"The application has reported the following error:",
                         L"Edit", L"Advanced Information  > >", L"OK", L"&Details:", L"Edit"}));
        dialog.Click(IDOK);
    });
    EXPECT_EQ(point->XmlLoad(nullptr), S_OK);
}

} // namespace
} // namespace dialogs
