// What the list of a structure's fields shows of each.

#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"

#include <commctrl.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dialogs {
namespace {

using Texts = std::vector<std::wstring>;

class StructureListTest : public DialogTest {
  protected:
    /// Edits a structure of these fields.
    void EditFields(const std::vector<HostPoint*>& fields, Script script) {
        HostPoint structure(L"Setpoints", L"whole", L"Struct");
        structure.SetFields(fields);
        Edit(structure, std::move(script));
    }
    void Edit(const HostPoint& structure, Script script) {
        const auto module = NewModule().As<ITamDialogs>();
        Next(std::move(script));
        EXPECT_EQ(module->EditValue(structure.object.Get()), S_OK);
    }
    static Texts Row(const Shown& dialog, int row) {
        Texts texts;
        for (int column = 0; column < 4; ++column) {
            texts.push_back(dialog.Cell(IDC_FIELDS, row, column));
        }
        return texts;
    }
    /// The row of a structure's only field.
    Texts RowOf(HostPoint& field) {
        Texts texts;
        EditFields({&field}, [&](Shown& dialog) {
            texts = Row(dialog, 0);
            dialog.Click(IDCANCEL);
        });
        return texts;
    }
    static Texts Headings(const Shown& dialog) {
        Texts texts;
        for (int column = 0; column < 5; ++column) {
            wchar_t text[64] = {};
            LVCOLUMNW heading{};
            heading.mask = LVCF_TEXT;
            heading.pszText = text;
            heading.cchTextMax = 64;
            if (SendMessageW(dialog.Control(IDC_FIELDS), LVM_GETCOLUMNW, static_cast<WPARAM>(column),
                             reinterpret_cast<LPARAM>(&heading)) != FALSE) {
                texts.emplace_back(text);
            }
        }
        return texts;
    }
    static RECT RowPlace(const Shown& dialog, int row) {
        RECT place{};
        place.left = LVIR_BOUNDS;
        SendMessageW(dialog.Control(IDC_FIELDS), LVM_GETITEMRECT, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(&place));
        return place;
    }
    static int ColumnWidth(const Shown& dialog, int column) {
        return static_cast<int>(
            SendMessageW(dialog.Control(IDC_FIELDS), LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
    }
};

TEST_F(StructureListTest, HasAColumnForEachThingShown) {
    EditFields({}, [](Shown& dialog) {
        EXPECT_EQ(Headings(dialog), (Texts{L"Field", L"Value", L"Displayed", L"Type"}));
        dialog.Click(IDCANCEL);
    });
}

TEST_F(StructureListTest, ShowsANumberWithItsUnit) {
    HostPoint field(L"Heating", L"21.5", L"SignedNumeric");
    EXPECT_EQ(RowOf(field), (Texts{L"Heating", L"21.5", support::Local(L"21.5"), L"SignedNumeric"}));
    field.type->AddText(L"Units", L"\u00B0C");
    field.type->AddText(L"Name", L"SNVT_temp_p");
    EXPECT_EQ(RowOf(field), (Texts{L"Heating", L"21.5", support::Local(L"21.5 \u00B0C"), L"SNVT_temp_p"}));
}

TEST_F(StructureListTest, ShowsTheTextOfAnEntry) {
    HostPoint field(L"Mode", L"1", L"Enum");
    field.type->AddText(L"EnumDesc", L"0,Off;1,On;");
    EXPECT_EQ(RowOf(field), (Texts{L"Mode", L"1", L"On", L"Enum"}));
    field.value = L"7";
    EXPECT_EQ(RowOf(field), (Texts{L"Mode", L"7", L"7", L"Enum"}));
}

TEST_F(StructureListTest, ShowsWhatTheFieldItselfSays) {
    HostPoint field(L"Mode", L"1", L"Enum");
    field.type->AddText(L"EnumDesc", L"0,Off;1,On;");
    field.object->AddText(L"DispValue", L"switched on");
    EXPECT_EQ(RowOf(field), (Texts{L"Mode", L"1", L"switched on", L"Enum"}));
    field.object->Replace(L"DispValue", [](auto) { return com::Variant(std::wstring_view()); });
    EXPECT_EQ(RowOf(field)[2], L"On") << "an empty text says nothing";
    field.object->Break(L"DispValue");
    EXPECT_EQ(RowOf(field)[2], L"On");
    EXPECT_TRUE(Messages().empty());
}

TEST_F(StructureListTest, ShowsAnAttributeAsItSays) {
    const auto attribute = Attribute(kEnum, L"1");
    const auto type = support::Object(attribute, &IAttribute::get_SNVTType).As<IEnumType>();
    ASSERT_EQ(support::Put(type, &IEnumType::put_EnumDesc, L"0,Off;1,On, by hand;"), S_OK);
    const auto fields = NamedObject::Make();
    fields->AddText(L"Count", L"1");
    fields->Add(L"Item", [&](auto) { return com::Variant(static_cast<IDispatch*>(attribute.Get())); });
    HostPoint structure(L"Setpoints", L"whole", L"Struct");
    structure.object->Add(L"Fields", [&](auto) { return com::Variant(fields.Get()); });
    Edit(structure, [](Shown& dialog) {
        EXPECT_EQ(Row(dialog, 0), (Texts{L"Point", L"1", L"On, by hand", L"SNVT_switch_state"}));
        dialog.Click(IDCANCEL);
    });
}

TEST_F(StructureListTest, ShowsAnyOtherValueAsItStands) {
    HostPoint flags(L"Flags", L"5", L"Bitfield");
    HostPoint label(L"Label", L"Hall.2", L"Textual");
    HostPoint odd(L"Odd", L"?", L"Enum");
    odd.type->AddText(L"EnumDesc", L"70000,Far;");
    EXPECT_EQ(RowOf(flags), (Texts{L"Flags", L"5", L"5", L"Bitfield"}));
    EXPECT_EQ(RowOf(label), (Texts{L"Label", L"Hall.2", L"Hall.2", L"Textual"}));
    EXPECT_EQ(RowOf(odd), (Texts{L"Odd", L"?", L"?", L"Enum"})) << "a description that cannot be read";
    odd.object->Break(L"SNVTType");
    EXPECT_EQ(RowOf(odd), (Texts{L"Odd", L"?", L"?", L""}));
}

TEST_F(StructureListTest, ShowsTheNewValueInEachColumn) {
    HostPoint field(L"Mode", L"0", L"Enum");
    field.type->AddText(L"EnumDesc", L"0,Off;1,On;");
    EditFields({&field}, [this](Shown& dialog) {
        Next([](Shown& editor) {
            editor.Choose(IDC_ENUM, 1);
            editor.Click(IDOK);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 0);
        EXPECT_EQ(Row(dialog, 0), (Texts{L"Mode", L"1", L"On", L"Enum"}));
        dialog.Click(IDOK);
    });
}

TEST_F(StructureListTest, CutsNoRowThrough) {
    std::vector<std::unique_ptr<HostPoint>> many;
    std::vector<HostPoint*> fields;
    for (int i = 0; i < 40; ++i) {
        many.push_back(std::make_unique<HostPoint>(L"Field", L"1", L"Float"));
        fields.push_back(many.back().get());
    }
    for (const std::size_t count : {std::size_t{40}, std::size_t{1}}) {
        fields.resize(count);
        EditFields(fields, [](Shown& dialog) {
            RECT client{};
            GetClientRect(dialog.Control(IDC_FIELDS), &client);
            const RECT first = RowPlace(dialog, 0);
            ASSERT_GT(first.bottom, first.top);
            EXPECT_EQ((client.bottom - first.top) % (first.bottom - first.top), 0);
            // The buttons follow the list, and the frame follows the buttons.
            RECT list{};
            RECT button{};
            RECT label{};
            RECT frame{};
            GetWindowRect(dialog.Control(IDC_FIELDS), &list);
            GetWindowRect(dialog.Control(IDOK), &button);
            GetWindowRect(dialog.Control(IDC_NAME), &label);
            GetClientRect(dialog.Window(), &frame);
            MapWindowPoints(dialog.Window(), nullptr, reinterpret_cast<POINT*>(&frame), 2);
            EXPECT_NEAR(button.top - list.bottom, label.top - frame.top, 2);
            EXPECT_NEAR(frame.bottom - button.bottom, label.top - frame.top, 2);
            dialog.Click(IDCANCEL);
        });
    }
}

// The list loses a part of a row, and the window as much.
TEST_F(StructureListTest, OpensInTheMiddleOfTheScreen) {
    HostPoint field(L"Field", L"1", L"Float");
    EditFields({&field}, [](Shown& dialog) {
        RECT work{};
        RECT place{};
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
        GetWindowRect(dialog.Window(), &place);
        EXPECT_NEAR((place.top + place.bottom) / 2, (work.top + work.bottom) / 2, 1);
        EXPECT_NEAR((place.left + place.right) / 2, (work.left + work.right) / 2, 1);
        dialog.Click(IDCANCEL);
    });
}

TEST_F(StructureListTest, ItsColumnsFillIt) {
    HostPoint field(L"Mode", L"1", L"Float");
    HostPoint wide(std::wstring(200, L'm'), std::wstring(200, L'1'), L"Textual");
    for (const bool isWide : {false, true}) {
        const std::vector<HostPoint*> one{&field};
        const std::vector<HostPoint*> two{&field, &wide};
        EditFields(isWide ? two : one, [isWide](Shown& dialog) {
            RECT client{};
            GetClientRect(dialog.Control(IDC_FIELDS), &client);
            int sum = 0;
            for (int column = 0; column < 4; ++column) {
                sum += ColumnWidth(dialog, column);
            }
            EXPECT_EQ(sum, client.right);
            if (isWide) {
                EXPECT_NEAR(ColumnWidth(dialog, 0), ColumnWidth(dialog, 1), 1);
                EXPECT_LT(ColumnWidth(dialog, 3), ColumnWidth(dialog, 0));
            }
            dialog.Click(IDCANCEL);
        });
    }
}

} // namespace
} // namespace dialogs
