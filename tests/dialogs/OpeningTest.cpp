// Editors that cannot open, and what stays closed while one is open.

#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"
#include "tests/support/Clipboard.h"

#include <commctrl.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace dialogs {
namespace {

constexpr auto kRaised = static_cast<HRESULT>(NamedObject::kRaised);

/// The description and the source of the thread's error object.
std::pair<std::wstring, std::wstring> LastError() {
    com::Ref<IErrorInfo> info;
    com::Bstr description;
    com::Bstr source;
    if (GetErrorInfo(0, info.Put()) == S_OK) {
        info->GetDescription(description.Put());
        info->GetSource(source.Put());
    }
    return {std::wstring(description.View()), std::wstring(source.View())};
}

class OpeningTest : public DialogTest {
  protected:
    HRESULT EditValue(const HostPoint& point) {
        return NewModule().As<ITamDialogs>()->EditValue(point.object.Get());
    }
    HRESULT Edit(const HostPoint& point, Script script) {
        Next(std::move(script));
        return EditValue(point);
    }
};

TEST_F(OpeningTest, AFormThatCannotBeFilledClosesAndTellsItsCaller) {
    for (const wchar_t* genType : {L"Float", L"Textual", L"Enum", L"Struct", L"Bitfield"}) {
        SCOPED_TRACE(::testing::PrintToString(std::wstring(genType)));
        HostPoint point(L"Speed", L"40", genType);
        point.object->Break(L"Name");
        EXPECT_EQ(EditValue(point), kRaised);
        EXPECT_EQ(LastError(), std::make_pair(std::wstring(L"Name is out of order"), std::wstring(L"Host")));
        EXPECT_TRUE(point.writes.empty());
        Messages(); // the form itself, before it was seen on the screen
    }
}

TEST_F(OpeningTest, AnErrorNumberWithoutAnErrorObjectStaysWithout) {
    const std::pair<const wchar_t*, const wchar_t*> members[] = {
        {L"Float", L"Name"},    {L"Textual", L"Name"}, {L"Enum", L"Name"},    {L"Struct", L"Name"},
        {L"Bitfield", L"Name"}, {L"Float", L"Value"},  {L"Struct", L"Fields"}};
    for (const auto& [genType, member] : members) {
        SCOPED_TRACE(::testing::PrintToString(genType + std::wstring(L" ") + member));
        HostPoint field(L"Field", L"1", L"Float");
        HostPoint point(L"Speed", L"40", genType);
        point.SetFields({&field});
        point.object->Replace(
            member, [](auto) -> com::Variant { throw com::CallError(kRaised, com::Ref<IErrorInfo>()); });
        EXPECT_EQ(EditValue(point), kRaised);
        com::Ref<IErrorInfo> info;
        EXPECT_EQ(GetErrorInfo(0, info.Put()), S_FALSE);
        Messages(); // the form itself, before it was seen on the screen
    }
}

TEST_F(OpeningTest, AFormThatClosedUnfilledOpensForItsNextPoint) {
    HostPoint broken(L"Speed", L"40", L"Float");
    broken.object->Break(L"Name");
    EXPECT_EQ(EditValue(broken), kRaised);
    Messages();
    HostPoint point(L"Speed", L"40", L"Float");
    EXPECT_EQ(Edit(point,
                   [](Shown& dialog) {
                       dialog.Type(IDC_NEW_VALUE, L"41");
                       dialog.Click(IDOK);
                   }),
              S_OK);
    EXPECT_EQ(point.value, L"41");
}

TEST_F(OpeningTest, AnAttributeIsEditedInOneFormAtATime) {
    const auto point = Attribute(kSigned, L"21.5");
    const auto value = DialogTest::Edit(point, [&](Shown& dialog) {
        EXPECT_EQ(point->SetValue(), support::kInvalidCall);
        EXPECT_EQ(LastError().first, support::kInvalidCallText);
        EXPECT_TRUE(dialog.IsOpen());
        dialog.Type(IDC_NEW_VALUE, L"7");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"7");
}

TEST_F(OpeningTest, AValueThatIsNoTextOpensNothing) {
    HostPoint point(L"Speed", L"40", L"Float");
    auto object = NamedObject::Make();
    object->AddText(L"Name", L"Speed");
    object->Add(L"Value", [](auto) {
        com::Variant failure;
        failure.Put()->vt = VT_ERROR;
        return failure;
    });
    object->Add(L"SNVTType", [&](auto) { return com::Variant(point.type.Get()); });
    EXPECT_EQ(NewModule().As<ITamDialogs>()->EditValue(object.Get()), support::kTypeMismatch);
}

TEST_F(OpeningTest, ATextOfNoLengthTakesNoCharacter) {
    HostPoint point(L"Label", L"", L"Textual");
    EXPECT_EQ(Edit(point,
                   [](Shown& dialog) {
                       EXPECT_EQ(dialog.Text(IDC_LENGTH), L"0 characters at most");
                       dialog.Type(IDC_NEW_VALUE, L"a");
                       EXPECT_EQ(dialog.Text(IDC_NEW_VALUE), L"");
                       dialog.Click(IDCANCEL);
                   }),
              S_OK);
    support::ExpectOnlyBox(Messages(), L"The text cannot exceed 0 characters", L"Name too long",
                           MB_ICONEXCLAMATION);
}

TEST_F(OpeningTest, ATextIsLimitedByItsTypeAndNotByTheBox) {
    const std::wstring text(31'000, L'a'); // past what a box takes by itself
    HostPoint point(L"Label", L"", L"Textual");
    point.type->AddText(L"Length", L"40000");
    EXPECT_EQ(Edit(point,
                   [&](Shown& dialog) {
                       dialog.Paste(IDC_NEW_VALUE, text);
                       EXPECT_EQ(dialog.Text(IDC_NEW_VALUE), text);
                       dialog.Click(IDOK);
                   }),
              S_OK);
    EXPECT_EQ(point.value, text);
}

TEST_F(OpeningTest, APastedNumberCanBeTakenBack) {
    const auto value = DialogTest::Edit(Attribute(kSigned, L"21"), [](Shown& dialog) {
        dialog.Paste(IDC_NEW_VALUE, L"7");
        EXPECT_EQ(dialog.Text(IDC_NEW_VALUE), L"7");
        SendMessageW(dialog.Control(IDC_NEW_VALUE), EM_UNDO, 0, 0);
        EXPECT_EQ(dialog.Text(IDC_NEW_VALUE), L"21");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"21");
}

TEST_F(OpeningTest, AStructureThatContainsItselfOpens) {
    HostPoint structure(L"Setpoints", L"whole", L"Struct");
    structure.SetFields({&structure});
    EXPECT_EQ(Edit(structure,
                   [&](Shown& dialog) {
                       EXPECT_EQ(dialog.Rows(IDC_FIELDS), 1);
                       structure.value = L"changed";
                       dialog.Click(IDCANCEL);
                   }),
              S_OK);
    EXPECT_EQ(structure.value, L"whole");
}

TEST_F(OpeningTest, AStructureThatContainsItselfSeveralTimesOpens) {
    HostPoint structure(L"Setpoints", L"whole", L"Struct");
    HostPoint inner(L"Inner", L"in", L"Struct");
    structure.SetFields({&structure, &inner, &structure});
    inner.SetFields({&inner, &structure, &inner});
    EXPECT_EQ(Edit(structure,
                   [&](Shown& dialog) {
                       EXPECT_EQ(dialog.Rows(IDC_FIELDS), 3);
                       structure.value = L"changed";
                       inner.value = L"changed";
                       dialog.Click(IDCANCEL);
                   }),
              S_OK);
    EXPECT_EQ(structure.value, L"whole");
    EXPECT_EQ(inner.value, L"in");
}

// A sloppy host answers the fields of the structure for each of its fields.
TEST_F(OpeningTest, FieldsThatAnswerTheCollectionTheyStandInOpen) {
    HostPoint structure(L"Setpoints", L"whole", L"Struct");
    HostPoint first(L"Speed", L"1", L"Float");
    HostPoint second(L"Mode", L"2", L"Float");
    for (HostPoint* const point : {&structure, &first, &second}) {
        point->SetFields({&first, &second});
    }
    EXPECT_EQ(Edit(structure,
                   [&](Shown& dialog) {
                       second.value = L"3";
                       dialog.Click(IDCANCEL);
                   }),
              S_OK);
    EXPECT_EQ(second.writes, (std::vector<std::wstring>{L"2"}));
}

TEST_F(OpeningTest, CancelRestoresFieldsBelowFields) {
    HostPoint deep(L"Deep", L"1", L"Float");
    std::vector<std::unique_ptr<HostPoint>> levels;
    HostPoint* below = &deep;
    for (int level = 0; level < 10; ++level) {
        levels.push_back(std::make_unique<HostPoint>(L"Level", L"whole", L"Struct"));
        levels.back()->SetFields({below});
        below = levels.back().get();
    }
    EXPECT_EQ(Edit(*below,
                   [&](Shown& dialog) {
                       deep.value = L"2";
                       dialog.Click(IDCANCEL);
                   }),
              S_OK);
    EXPECT_EQ(deep.value, L"1");
}

TEST_F(OpeningTest, ADoubleClickBesideTheRowsOpensNothing) {
    HostPoint field(L"Speed", L"40", L"Float");
    HostPoint structure(L"Setpoints", L"whole", L"Struct");
    structure.SetFields({&field});
    EXPECT_EQ(Edit(structure,
                   [](Shown& dialog) {
                       RECT list{};
                       GetClientRect(dialog.Control(IDC_FIELDS), &list);
                       dialog.DoubleClick(IDC_FIELDS, 5, list.bottom - 5);
                       SendMessageW(dialog.Window(), WM_COMMAND, MAKEWPARAM(IDC_EDIT_FIELD, BN_CLICKED), 0);
                       dialog.Click(IDCANCEL);
                   }),
              S_OK);
    EXPECT_TRUE(Messages().empty());
}

TEST_F(OpeningTest, OkWithoutAChosenEntryWritesNothing) {
    HostPoint mode(L"Mode", L"none", L"Enum");
    mode.type->AddText(L"EnumDesc", L"0,Off;1,On;");
    EXPECT_EQ(Edit(mode,
                   [](Shown& dialog) {
                       EXPECT_EQ(SendMessageW(dialog.Control(IDC_ENUM), CB_GETCURSEL, 0, 0), CB_ERR);
                       EXPECT_EQ(dialog.Text(IDC_ENUM), L"");
                       SendMessageW(dialog.Window(), WM_COMMAND, IDOK, 0);
                       EXPECT_TRUE(dialog.IsOpen());
                       dialog.Click(IDCANCEL);
                   }),
              S_OK);
    EXPECT_TRUE(mode.writes.empty());
}

TEST_F(OpeningTest, APasteFromAnEmptyClipboardChangesNothing) {
    const auto value = DialogTest::Edit(Attribute(kText, L"hall"), [](Shown& dialog) {
        {
            const support::OpenedClipboard clipboard(dialog.Window());
            ASSERT_TRUE(clipboard);
            EmptyClipboard();
        }
        dialog.Select(IDC_NEW_VALUE, 4, 4);
        SendMessageW(dialog.Control(IDC_NEW_VALUE), WM_PASTE, 0, 0);
        EXPECT_EQ(dialog.Text(IDC_NEW_VALUE), L"hall");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"hall");
}

TEST_F(OpeningTest, TheAboutBoxClosesByItsFrame) {
    const auto module = NewModule().As<ITamDialogs>();
    Next([](Shown& dialog) {
        dialog.CloseByItsFrame();
        EXPECT_FALSE(dialog.IsOpen());
    });
    EXPECT_EQ(module->ShowAbout(), S_OK);
}

TEST_F(OpeningTest, RenamingNeedsAPlaceForTheName) {
    short choice = 7;
    EXPECT_EQ(NewModule().As<ITamDialogs>()->ShowRename(nullptr, nullptr, &choice), E_POINTER);
    EXPECT_EQ(choice, 0);
}

} // namespace
} // namespace dialogs
