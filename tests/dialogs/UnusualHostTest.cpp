// Data points as scripts and other hosts make them: numbers instead of texts,
// dictionaries of fields, objects made for each caller.

#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"
#include "tests/support/Recorder.h"

#include "com/Creation.h"
#include "com/LateBound.h"

#include <array>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace dialogs {
namespace {

using support::Local;

/// A VARIANT that owns nothing.
template <class T>
com::Variant Plain(VARTYPE kind, T VARIANT::*member, T value) {
    com::Variant result;
    VARIANT* place = result.Put();
    place->vt = kind;
    place->*member = value;
    return result;
}

class UnusualHostTest : public DialogTest {
  protected:
    HRESULT EditValue(IDispatch* object) { return NewModule().As<ITamDialogs>()->EditValue(object); }
    HRESULT Edit(IDispatch* object, Script script) {
        Next(std::move(script));
        return EditValue(object);
    }
    /// Cancels the editor that opens, and tells its point's name.
    Script Cancel(std::wstring& name) {
        return [&name](Shown& dialog) {
            name = dialog.Text(IDC_NAME);
            dialog.Click(IDCANCEL);
        };
    }
    /// A dictionary of the script run-time with these objects.
    com::Ref<IDispatch> Dictionary(const std::vector<std::pair<std::wstring, IDispatch*>>& entries) {
        auto dictionary = com::CreateByProgId(L"Scripting.Dictionary");
        for (const auto& [key, object] : entries) {
            const com::Variant name(key);
            std::array<VARIANT, 2> arguments{name.Get(), com::Variant(object).Get()};
            com::CallMember(*dictionary.Get(), L"Add", arguments);
        }
        return dictionary;
    }
    static long Count(IDispatch* collection) { return com::GetMember(*collection, L"Count").Get().lVal; }
};

TEST_F(UnusualHostTest, NumbersMayBeNumbers) {
    auto type = NamedObject::Make();
    type->AddText(L"GenType", L"Float");
    type->Add(L"Min", [](auto) { return Plain(VT_R8, &VARIANT::dblVal, -2.5); });
    type->Add(L"Max", [](auto) { return Plain(VT_R8, &VARIANT::dblVal, 30.25); });
    type->Add(L"Units", [](auto) { return Plain(VT_NULL, &VARIANT::lVal, 0L); });
    auto point = NamedObject::Make();
    std::wstring written;
    point->AddText(L"Name", L"Speed");
    point->Add(
        L"Value", [](auto) { return Plain(VT_R8, &VARIANT::dblVal, 21.5); },
        [&](const VARIANT& value) { written = com::Text(value.bstrVal); });
    point->Add(L"SNVTType", [type](auto) { return com::Variant(type.Get()); });
    EXPECT_EQ(Edit(point.Get(),
                   [](Shown& dialog) {
                       EXPECT_EQ(dialog.Text(kValueBox), Local(L"21.5"));
                       EXPECT_EQ(dialog.Text(IDC_MIN), Local(L"-2.5"));
                       EXPECT_EQ(dialog.Text(IDC_MAX), Local(L"30.25"));
                       EXPECT_FALSE(dialog.IsEnabled(IDC_INVALID));
                       dialog.Type(kValueBox, L"31");
                       EXPECT_EQ(dialog.Text(kValueBox), Local(L"30.25"));
                       dialog.Type(kValueBox, L"-" + Local(L"2.75"));
                       dialog.Click(IDOK);
                       EXPECT_EQ(dialog.Text(kValueBox), Local(L"-2.5"));
                       dialog.Type(kValueBox, L"-" + Local(L".25"));
                       dialog.Click(IDOK);
                   }),
              S_OK);
    EXPECT_EQ(written, L"-" + Local(L"0.25"));
    EXPECT_EQ(Messages().size(), 2U);
}

TEST_F(UnusualHostTest, FieldsAreAskedByNameWhereTheSlotIsNotThere) {
    HostPoint field(L"Speed", L"12", L"Float");
    HostPoint names(L"All", L"1", L"Struct");
    names.SetFields({&field});
    const auto type = support::Object(Attribute(kStruct, L"1"), &IAttribute::get_SNVTType);
    // A host's attribute that has its name, value and type in their slots and the
    // other members by name alone.
    const auto slots = support::Recorder::Make(L"point", {&__uuidof(IAttribute)});
    slots->Set(L"Name", L"All");
    slots->Set(L"Value", L"1");
    slots->Set(L"SNVTType", type);
    slots->RefuseOthers();
    slots->SetNames(com::Ref<IDispatch>(names.object));
    const auto point = slots->As<IDispatch>();
    const auto list = [](Shown& dialog) {
        EXPECT_EQ(dialog.Rows(IDC_FIELDS), 1);
        EXPECT_EQ(dialog.Cell(IDC_FIELDS, 0, 0), L"Speed");
        EXPECT_EQ(dialog.Cell(IDC_FIELDS, 0, 1), L"12");
        dialog.Click(IDCANCEL);
    };
    EXPECT_EQ(Edit(point.Get(), list), S_OK);

    names.object->Break(L"Fields", E_NOTIMPL);
    EXPECT_EQ(EditValue(point.Get()), E_NOTIMPL) << "not there by name either";
}

TEST_F(UnusualHostTest, AnAttributeIsEditedByNameFromAScriptsVariables) {
    const auto point = Attribute(kBits8, L"5");
    const auto module = NewModule();
    VARIANT object{};
    object.vt = VT_DISPATCH;
    object.pdispVal = point.Get();
    VARIANT variable{};
    variable.vt = VT_VARIANT | VT_BYREF;
    variable.pvarVal = &object;
    VARIANT reference{};
    reference.vt = VT_DISPATCH | VT_BYREF;
    reference.ppdispVal = &object.pdispVal;
    for (VARIANT argument : {object, variable, reference}) {
        std::wstring name;
        Next(Cancel(name));
        com::CallMember(*module.Get(), L"EditValue", std::span<VARIANT>(&argument, 1));
        EXPECT_EQ(name, L"Point");
    }
    Next([](Shown& dialog) {
        dialog.DoubleClick(IDC_BIT + 1);
        dialog.Click(IDOK);
    });
    com::CallMember(*point.Get(), L"SetValue", {});
    EXPECT_EQ(support::Text(point, &IAttribute::get_Value), L"7");
}

TEST_F(UnusualHostTest, NoObjectIsRefusedByNameToo) {
    const auto module = NewModule();
    VARIANT nothing{};
    nothing.vt = VT_DISPATCH;
    try {
        com::CallMember(*module.Get(), L"EditValue", std::span<VARIANT>(&nothing, 1));
        ADD_FAILURE() << "was not refused";
    } catch (...) {
        const auto failure = com::CurrentFailure();
        EXPECT_EQ(failure.code, support::kObjectNotSet);
        EXPECT_EQ(failure.Description(), support::kObjectNotSetText);
    }
}

TEST_F(UnusualHostTest, AFieldWhoseTypeIsNothingCannotBeChanged) {
    const auto untyped = [](bool hasMember) {
        auto field = NamedObject::Make();
        field->AddText(L"Name", L"Loose");
        field->AddText(L"Value", L"?");
        if (hasMember) {
            field->Add(L"SNVTType", [](auto) { return com::Variant(static_cast<IDispatch*>(nullptr)); });
        }
        return field;
    };
    const auto nothing = untyped(true);
    const auto without = untyped(false);
    HostPoint structure(L"All", L"", L"Struct");
    const auto fields = Dictionary({{L"a", nothing.Get()}, {L"b", without.Get()}});
    structure.object->Add(L"Fields", [&](auto) { return com::Variant(fields.Get()); });
    EXPECT_EQ(Edit(structure.object.Get(),
                   [](Shown& dialog) {
                       dialog.DoubleClickRow(IDC_FIELDS, 0);
                       dialog.DoubleClickRow(IDC_FIELDS, 1);
                       dialog.Click(IDCANCEL);
                   }),
              S_OK);
    const auto messages = Messages();
    ASSERT_EQ(messages.size(), 2U);
    for (const bench::Box& box : messages) {
        support::ExpectBox(box, L"Unknown or Not modificable Attribute", L"Edit Value", MB_ICONEXCLAMATION);
    }
    EXPECT_EQ(EditValue(nothing.Get()), support::kObjectNotSet);
}

TEST_F(UnusualHostTest, AnEditorIsModalToTheHostsActiveWindow) {
    const HWND host = CreateWindowExW(0, L"Static", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200,
                                      nullptr, nullptr, nullptr, nullptr);
    SetActiveWindow(host);
    const auto point = Attribute(kEnum, L"0");
    DialogTest::Edit(point, [host](Shown& dialog) {
        EXPECT_EQ(GetWindow(dialog.Window(), GW_OWNER), host);
        EXPECT_FALSE(IsWindowEnabled(host));
        dialog.Click(IDCANCEL);
    });
    EXPECT_TRUE(IsWindowEnabled(host));
    DestroyWindow(host);
}

TEST_F(UnusualHostTest, AnotherAttributeMayBeEditedMeanwhile) {
    const auto first = Attribute(kText, L"hall");
    const auto second = Attribute(kBits8, L"5");
    const auto value = DialogTest::Edit(first, [&](Shown& dialog) {
        EXPECT_EQ(DialogTest::Edit(second,
                                   [](Shown& inner) {
                                       inner.DoubleClick(IDC_BIT);
                                       inner.Click(IDOK);
                                   }),
                  L"4");
        dialog.Type(kValueBox, L"attic");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"attic");
}

TEST_F(UnusualHostTest, FieldsMayBeADictionary) {
    HostPoint speed(L"Speed", L"40", L"UnsignedNumeric");
    HostPoint deep(L"Deep", L"1", L"SignedNumeric");
    HostPoint structure(L"All", L"", L"Struct");
    const auto fields = Dictionary({{L"a", speed.object.Get()}, {L"b", deep.object.Get()}});
    structure.object->Add(L"Fields", [&](auto) { return com::Variant(fields.Get()); });
    EXPECT_EQ(Edit(structure.object.Get(),
                   [this](Shown& dialog) {
                       ASSERT_EQ(dialog.Rows(IDC_FIELDS), 2);
                       EXPECT_EQ(dialog.Cell(IDC_FIELDS, 1, 0), L"Deep");
                       EXPECT_EQ(dialog.Cell(IDC_FIELDS, 1, 1), L"1");
                       Next([](Shown& field) {
                           EXPECT_EQ(field.Text(IDC_NAME), L"Deep");
                           field.Type(kValueBox, L"2");
                           field.Click(IDOK);
                       });
                       dialog.DoubleClickRow(IDC_FIELDS, 1);
                       dialog.Click(IDOK);
                   }),
              S_OK);
    EXPECT_EQ(deep.value, L"2");
    EXPECT_EQ(Count(fields.Get()), 2) << "a dictionary makes an entry of each key that it is asked for";
}

TEST_F(UnusualHostTest, AFieldMadeForEachCallerIsFoundByItsName) {
    HostPoint speed(L"Speed", L"40", L"UnsignedNumeric");
    HostPoint structure(L"All", L"", L"Struct");
    const auto another = [&speed] {
        auto field = NamedObject::Make();
        field->AddText(L"Name", L"Speed");
        field->Add(
            L"Value", [&speed](auto) { return com::Variant(speed.value); },
            [&speed](const VARIANT& value) { speed.value = com::Text(value.bstrVal); });
        field->Add(L"SNVTType", [&speed](auto) { return com::Variant(speed.type.Get()); });
        return com::Variant(field.Get());
    };
    auto walker = NamedObject::Make();
    HostPoint walked(L"Walk", L"", L"Struct");
    walked.SetFields({&speed}, HostPoint::Walk::ByEnumeratorAlone);
    walker->Add(L"_NewEnum", [&walked](auto) {
        const com::Variant fields = com::GetMember(*walked.object.Get(), L"Fields");
        return com::GetMember(*fields.Get().pdispVal, L"_NewEnum");
    });
    walker->Add(L"Item", [another](std::span<const VARIANT> arguments) {
        if (arguments.front().vt != VT_BSTR || com::View(arguments.front().bstrVal) != L"Speed") {
            throw com::CallError(DISP_E_BADINDEX);
        }
        return another();
    });
    structure.object->Add(L"Fields", [&](auto) { return com::Variant(walker.Get()); });
    EXPECT_EQ(Edit(structure.object.Get(),
                   [this](Shown& dialog) {
                       Next([](Shown& field) {
                           field.Type(kValueBox, L"55");
                           field.Click(IDOK);
                       });
                       dialog.DoubleClickRow(IDC_FIELDS, 0);
                       EXPECT_EQ(dialog.Cell(IDC_FIELDS, 0, 1), L"55");
                       dialog.Click(IDOK);
                   }),
              S_OK);
    EXPECT_EQ(speed.value, L"55");
}

TEST_F(UnusualHostTest, AnAttributeThatIsEditedKeepsItsModuleAndOutlivesItsCaller) {
    auto point = Attribute(kText, L"hall"); // nobody else holds its module
    EXPECT_TRUE(support::Object(point, &IAttribute::get_Parent));
    IAttribute* const bare = point.Get();
    std::wstring value;
    Next([&](Shown& dialog) {
        dialog.Type(kValueBox, L"attic");
        const com::Ref<IAttribute> last(bare);
        point.Reset();
        dialog.Click(IDOK);
        value = support::Text(last, &IAttribute::get_Value);
    });
    EXPECT_EQ(bare->SetValue(), S_OK);
    EXPECT_EQ(value, L"attic");
}

TEST_F(UnusualHostTest, ATypeThatIsReplacedLeavesTheEditor) {
    const auto point = Attribute(kSigned, L"12");
    const auto saved = support::Parse(L"<Point><SNVT_TYPE>36</SNVT_TYPE></Point>");
    EXPECT_EQ(point.As<_CDBAttribute>()->XmlLoad(support::Root(saved).Get()), S_OK);
    const auto value = DialogTest::Edit(point, [](Shown& dialog) {
        EXPECT_EQ(dialog.Text(IDC_TYPE), L"SNVT_str");
        EXPECT_TRUE(dialog.Control(IDC_INVALID)) << "the numeric editor, as chosen at first";
        dialog.Type(kValueBox, L"1a3");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"13");
}

TEST_F(UnusualHostTest, OutsideAStructureNothingIsWrittenBack) {
    HostPoint speed(L"Speed", L"40", L"Float");
    const auto cancel = [](Shown& dialog) { dialog.Click(IDCANCEL); };
    EXPECT_EQ(Edit(speed.object.Get(), cancel), S_OK);
    EXPECT_TRUE(speed.writes.empty());
    EXPECT_EQ(Edit(speed.object.Get(), [](Shown& dialog) { dialog.Click(IDOK); }), S_OK);
    EXPECT_EQ(speed.writes, std::vector<std::wstring>{L"40"});
}

TEST_F(UnusualHostTest, TheWindowsOwnCloseIsCancel) {
    HostPoint speed(L"Speed", L"40", L"Float");
    HostPoint mode(L"Mode", L"0", L"Enum");
    mode.type->AddText(L"EnumDesc", L"0,Off;1,On;");
    EXPECT_EQ(Edit(speed.object.Get(),
                   [](Shown& dialog) {
                       dialog.Type(kValueBox, L"5");
                       dialog.CloseByItsFrame();
                   }),
              S_OK);
    EXPECT_EQ(Edit(mode.object.Get(),
                   [](Shown& dialog) {
                       dialog.Choose(IDC_ENUM, 1);
                       dialog.CloseByItsFrame();
                   }),
              S_OK);
    EXPECT_TRUE(speed.writes.empty());
    EXPECT_TRUE(mode.writes.empty());
}

} // namespace
} // namespace dialogs
