// Pictures of the dialogs for a person to look at: one bitmap for each, into the
// folder that TAM_PICTURES names. Built on the tests' driver; not a test.

#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"
#include "tests/Picture.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dialogs {
namespace {

/// Lets everything be painted.
void Settle(HWND window) {
    const DWORD end = GetTickCount() + 400;
    while (GetTickCount() < end) {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
            if (IsDialogMessageW(window, &message) == FALSE) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
        }
        Sleep(20);
    }
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

/// The window as it stands on the screen, frame and title included.
void Take(const Shown& dialog, const wchar_t* name) {
    const HWND window = dialog.Window();
    Settle(window);
    SendMessageW(window, WM_NCACTIVATE, TRUE, 0); // the title of the active window, whatever the desktop did
    RECT place{};
    GetWindowRect(window, &place);
    OffsetRect(&place, -place.left, -place.top);
    const HDC screen = GetWindowDC(window);
    const auto failure = com::Attempt([&] { tests::WritePicture(name, screen, place); });
    EXPECT_FALSE(failure) << "a picture cannot be written";
    ReleaseDC(window, screen);
}

class Pictures : public DialogTest {
  protected:
    void Show(HostPoint& point, Script script) {
        const auto module = NewModule().As<ITamDialogs>();
        Next(std::move(script));
        EXPECT_EQ(module->EditValue(point.object.Get()), S_OK);
    }
    static Script Picture(const wchar_t* name) {
        return [name](Shown& dialog) {
            Take(dialog, name);
            dialog.Click(IDCANCEL);
        };
    }
};

TEST_F(Pictures, Numeric) {
    HostPoint point(L"Room setpoint", L"21.5", L"SignedNumeric");
    point.type->AddText(L"Name", L"SNVT_temp_p");
    point.type->AddText(L"Min", L"-273.17");
    point.type->AddText(L"Max", L"327.66");
    point.type->AddText(L"Units", L"\u00B0C");
    point.type->AddText(L"InvalidValue", L"327.67");
    Show(point, [](Shown& dialog) {
        Take(dialog, L"numeric");
        dialog.Click(IDC_INVALID);
        Take(dialog, L"numeric-invalid");
        dialog.Click(IDCANCEL);
    });
}

TEST_F(Pictures, NumericWithLongTexts) {
    HostPoint point(L"A name that is a good deal longer than any that fits into the width of the dialog box",
                    L"1", L"Float");
    point.type->AddText(L"Name", L"SNVT_count_inc_f");
    point.type->AddText(L"Min", L"-340282000000000000000000000000000000000");
    point.type->AddText(L"Max", L"340282000000000000000000000000000000000");
    point.type->AddText(L"Units", L"counts per second");
    Show(point, Picture(L"numeric-long"));
}

TEST_F(Pictures, Text) {
    HostPoint point(L"Label", L"Hall_2", L"Textual");
    point.type->AddText(L"Name", L"SNVT_str_asc");
    point.type->AddText(L"Length", L"31");
    Show(point, Picture(L"text"));
}

TEST_F(Pictures, Enumeration) {
    HostPoint point(L"Mode", L"1", L"Enum");
    point.type->AddText(L"Name", L"SNVT_hvac_mode");
    point.type->AddText(L"EnumDesc", L"0,HVAC_AUTO;1,HVAC_HEAT;2,HVAC_MRNG_WRMUP;3,HVAC_COOL;4,HVAC_OFF;");
    Show(point, Picture(L"enumeration"));
    point.value = L"9";
    Show(point, Picture(L"enumeration-none"));
}

TEST_F(Pictures, Bits) {
    HostPoint word(L"Alarm mask", L"43690", L"Bitfield");
    word.type->AddText(L"Name", L"SNVT_state");
    word.type->AddText(L"Length", L"2");
    Show(word, Picture(L"bits-16"));
    HostPoint byte(L"Relays", L"5", L"Bitfield");
    byte.type->AddText(L"Name", L"SNVT_state_8");
    byte.type->AddText(L"Length", L"1");
    Show(byte, Picture(L"bits-8"));
}

TEST_F(Pictures, Structure) {
    HostPoint cool(L"Occupied cooling", L"23", L"SignedNumeric");
    HostPoint heat(L"Occupied heating", L"21", L"SignedNumeric");
    HostPoint mode(L"Mode", L"1", L"Enum");
    HostPoint flags(L"Flags", L"5", L"Bitfield");
    HostPoint label(L"Label", L"Hall_2", L"Textual");
    HostPoint structure(L"Setpoints", L"", L"Struct");
    for (HostPoint* setpoint : {&cool, &heat}) {
        setpoint->type->AddText(L"Name", L"SNVT_temp_p");
        setpoint->type->AddText(L"Units", L"\u00B0C");
    }
    mode.type->AddText(L"Name", L"SNVT_hvac_mode");
    mode.type->AddText(L"EnumDesc", L"0,HVAC_AUTO;1,HVAC_HEAT;");
    flags.type->AddText(L"Name", L"SNVT_state");
    label.type->AddText(L"Name", L"SNVT_str_asc");
    structure.SetFields({&cool, &heat, &mode, &flags, &label});
    Show(structure, [this](Shown& dialog) {
        Take(dialog, L"structure");
        Next(Picture(L"structure-field"));
        dialog.DoubleClickRow(IDC_FIELDS, 0);
        dialog.Click(IDCANCEL);
    });
    std::vector<std::unique_ptr<HostPoint>> many;
    std::vector<HostPoint*> fields;
    for (int i = 1; i <= 30; ++i) {
        many.push_back(std::make_unique<HostPoint>(L"Schedule entry with a long name " + std::to_wstring(i),
                                                   std::to_wstring(i * 100), L"UnsignedNumeric"));
        fields.push_back(many.back().get());
    }
    HostPoint schedule(L"Schedule", L"", L"Struct");
    schedule.SetFields(fields);
    Show(schedule, Picture(L"structure-many"));
}

TEST_F(Pictures, Rename) {
    const auto module = NewModule().As<ITamDialogs>();
    Next(Picture(L"rename"));
    com::Variant name(std::wstring_view(L"Tam_1"));
    VARIANT argument = name.Detach();
    short choice = 0;
    EXPECT_EQ(module->ShowRename(&argument, nullptr, &choice), S_OK);
    VariantClear(&argument);
}

TEST_F(Pictures, ReportAndAbout) {
    const auto point = Attribute(kSigned, L"1").As<_CDBAttribute>();
    Next([](Shown& dialog) {
        Take(dialog, L"report-folded");
        dialog.Click(IDC_ERROR_ADVANCED);
        Take(dialog, L"report-unfolded");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(point->XmlLoad(nullptr), S_OK);
    HostPoint broken(L"Field", L"1", L"Float");
    HostPoint structure(L"Structure", L"", L"Struct");
    structure.SetFields({&broken});
    Show(structure, [&](Shown& dialog) {
        broken.object->Break(L"Value", NamedObject::kRaised, std::wstring(1 << 20, L'n'));
        Next([](Shown& report) {
            Take(report, L"report-long");
            report.Click(IDOK);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 0);
        Next([](Shown& report) { report.Click(IDOK); });
        dialog.Click(IDCANCEL);
    });
    const auto module = NewModule().As<ITamDialogs>();
    Next([](Shown& dialog) {
        Take(dialog, L"about");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(module->ShowAbout(), S_OK);
}

} // namespace
} // namespace dialogs
