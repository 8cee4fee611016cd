// Structures of a host that makes an object for each caller, with the value that
// the field has at that moment.

#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"

#include "com/Enumerator.h"
#include "com/LateBound.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace dialogs {
namespace {

/// A field as the host keeps it.
struct StoredField {
    std::wstring name;
    std::wstring value;
    std::wstring genType = L"SignedNumeric";
    std::vector<StoredField> fields = {};
    std::vector<std::wstring> writes = {};
    /// The fields of another in place of its own.
    std::vector<StoredField>* sameAs = nullptr;
};

com::Ref<NamedObject> ObjectOf(StoredField& stored);

/// What the Item of a collection finds.
enum class Finds { Names, Positions };

com::Variant ItemOf(std::vector<StoredField>& fields, Finds finds, const VARIANT& key) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const bool isName = key.vt == VT_BSTR && com::View(key.bstrVal) == fields[i].name;
        const bool isPosition = key.vt == VT_I4 && key.lVal == static_cast<long>(i) + 1;
        if (finds == Finds::Names ? isName : isPosition) {
            return com::Variant(ObjectOf(fields[i]).Get());
        }
    }
    throw com::CallError(DISP_E_BADINDEX);
}

com::Ref<NamedObject> CollectionOf(std::vector<StoredField>& fields, Finds finds) {
    auto collection = NamedObject::Make();
    collection->Add(L"_NewEnum", [&fields](auto) {
        std::vector<com::Ref<IDispatch>> objects;
        for (StoredField& field : fields) {
            objects.emplace_back(ObjectOf(field).Get());
        }
        com::Variant result;
        VARIANT* value = result.Put();
        value->vt = VT_UNKNOWN;
        value->punkVal = com::MakeEnumerator(std::move(objects)).Detach();
        return result;
    });
    collection->Add(L"Item", [&fields, finds](std::span<const VARIANT> arguments) {
        return ItemOf(fields, finds, arguments.front());
    });
    return collection;
}

com::Ref<NamedObject> ObjectOf(StoredField& stored) {
    const auto copy = std::make_shared<std::wstring>(stored.value);
    auto type = NamedObject::Make();
    type->AddText(L"GenType", stored.genType);
    auto object = NamedObject::Make();
    object->AddText(L"Name", stored.name);
    object->Add(
        L"Value", [copy](auto) { return com::Variant(*copy); },
        [copy, &stored](const VARIANT& value) {
            *copy = com::Text(value.bstrVal);
            stored.value = *copy;
            stored.writes.push_back(*copy);
        });
    object->Add(L"SNVTType", [type](auto) { return com::Variant(type.Get()); });
    object->Add(L"Fields", [&stored](auto) {
        std::vector<StoredField>& fields = stored.sameAs != nullptr ? *stored.sameAs : stored.fields;
        return com::Variant(fields.empty() ? nullptr : CollectionOf(fields, Finds::Names).Get());
    });
    return object;
}

class FieldsForEachCallerTest : public DialogTest {
  protected:
    void EditStructure(Finds finds, Script script) {
        HostPoint structure(L"All", L"", L"Struct");
        structure.object->Add(L"Fields",
                              [&](auto) { return com::Variant(CollectionOf(fields_, finds).Get()); });
        Next(std::move(script));
        EXPECT_EQ(NewModule().As<ITamDialogs>()->EditValue(structure.object.Get()), S_OK);
    }
    /// Confirms a new number in the editor of the first field.
    void TypeIntoFirst(Shown& dialog, const std::wstring& number) {
        Next([number](Shown& field) {
            field.Type(IDC_NEW_VALUE, number);
            field.Click(IDOK);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 0);
        EXPECT_EQ(dialog.Cell(IDC_FIELDS, 0, 1), number);
    }

    std::vector<StoredField> fields_{{L"Speed", L"40"},
                                     {L"Inner", L"in", L"Struct", {{L"Deep", L"1"}, {L"Deeper", L"2"}}},
                                     {L"Mode", L"0"}};
};

TEST_F(FieldsForEachCallerTest, ARowShowsTheValueThatTheHostHasByNow) {
    for (const Finds finds : {Finds::Names, Finds::Positions}) {
        fields_[0] = {L"Speed", L"40"};
        EditStructure(finds, [this](Shown& dialog) {
            TypeIntoFirst(dialog, L"55");
            dialog.Click(IDOK);
        });
        EXPECT_EQ(fields_[0].writes, (std::vector<std::wstring>{L"55", L"55", L"55"}))
            << "its editor's OK and closing, then the structure's OK";
    }
}

TEST_F(FieldsForEachCallerTest, CancelGoesBackToTheValuesAtOpening) {
    for (const Finds finds : {Finds::Names, Finds::Positions}) {
        EditStructure(finds, [this](Shown& dialog) {
            TypeIntoFirst(dialog, L"55");
            EXPECT_EQ(fields_[0].value, L"55");
            dialog.Click(IDCANCEL);
        });
        EXPECT_EQ(fields_[0].value, L"40");
        EXPECT_TRUE(fields_[2].writes.empty());
    }
}

TEST_F(FieldsForEachCallerTest, AStructureThatContainsItselfSeveralTimesOpens) {
    fields_ = {{L"Speed", L"40"}, {L"Left", L"1", L"Struct"}, {L"Right", L"2", L"Struct"}};
    fields_[1].sameAs = &fields_;
    fields_[2].sameAs = &fields_;
    EditStructure(Finds::Names, [this](Shown& dialog) {
        EXPECT_EQ(dialog.Rows(IDC_FIELDS), 3);
        fields_[0].value = L"55";
        fields_[2].value = L"3";
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(fields_[0].value, L"40");
    EXPECT_EQ(fields_[2].value, L"2");
}

TEST_F(FieldsForEachCallerTest, TheCollectionIsAskedForOncePerPass) {
    HostPoint structure(L"All", L"", L"Struct");
    int asked = 0;
    structure.object->Add(L"Fields", [&](auto) {
        ++asked;
        return com::Variant(CollectionOf(fields_, Finds::Names).Get());
    });
    Next([&](Shown& dialog) {
        EXPECT_EQ(asked, 1) << "the rows and what Cancel goes back to";
        TypeIntoFirst(dialog, L"55");
        EXPECT_EQ(asked, 3) << "the field's editor, and the rows that are read again";
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(NewModule().As<ITamDialogs>()->EditValue(structure.object.Get()), S_OK);
    EXPECT_EQ(asked, 5) << "Cancel, and again after the value that it wrote back";
}

TEST_F(FieldsForEachCallerTest, CancelGoesBackToAValueThatFollowsAnother) {
    HostPoint structure(L"All", L"", L"Struct");
    structure.object->Add(L"Fields", [this](auto) {
        fields_[2].value = fields_[0].writes.empty() || fields_[0].value == L"55" ? L"0" : L"9";
        std::vector<com::Ref<NamedObject>> objects; // with the values of this moment
        for (StoredField& field : fields_) {
            objects.push_back(ObjectOf(field));
        }
        auto list = CollectionOf(fields_, Finds::Positions);
        list->Replace(L"Item", [objects](std::span<const VARIANT> arguments) {
            const VARIANT& key = arguments.front();
            if (key.vt != VT_I4) {
                throw com::CallError(DISP_E_BADINDEX);
            }
            return com::Variant(objects.at(static_cast<std::size_t>(key.lVal) - 1).Get());
        });
        return com::Variant(list.Get());
    });
    Next([this](Shown& dialog) {
        TypeIntoFirst(dialog, L"55");
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(NewModule().As<ITamDialogs>()->EditValue(structure.object.Get()), S_OK);
    EXPECT_EQ(fields_[0].value, L"40");
    EXPECT_EQ(fields_[2].writes, std::vector<std::wstring>{L"0"}) << "9 as soon as Speed is 40 again";
}

TEST_F(FieldsForEachCallerTest, CancelGoesBackInsideStructuresToo) {
    EditStructure(Finds::Names, [this](Shown& dialog) {
        Next([this](Shown& nested) {
            TypeIntoFirst(nested, L"7");
            nested.Click(IDOK);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 1);
        EXPECT_EQ(fields_[1].fields[0].value, L"7");
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(fields_[1].fields[0].value, L"1");
    EXPECT_TRUE(fields_[1].fields[1].writes.empty());
}

TEST_F(FieldsForEachCallerTest, AnItemThatFindsNothingLeavesTheWalkedObjects) {
    HostPoint speed(L"Speed", L"40", L"SignedNumeric");
    HostPoint structure(L"All", L"", L"Struct");
    structure.SetFields({&speed});
    const com::Variant fields = com::GetMember(*structure.object.Get(), L"Fields");
    static_cast<NamedObject*>(fields.Get().pdispVal)->Replace(L"Item", [](auto) -> com::Variant {
        throw com::CallError(DISP_E_BADINDEX);
    });
    Next([this, &speed](Shown& dialog) {
        TypeIntoFirst(dialog, L"55");
        EXPECT_EQ(speed.value, L"55");
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(NewModule().As<ITamDialogs>()->EditValue(structure.object.Get()), S_OK);
    EXPECT_EQ(speed.value, L"40");
}

TEST_F(FieldsForEachCallerTest, APositionThatHoldsAnotherFieldIsNotTaken) {
    HostPoint structure(L"All", L"", L"Struct");
    auto fromZero = CollectionOf(fields_, Finds::Positions);
    fromZero->Replace(L"Item", [this](std::span<const VARIANT> arguments) {
        const VARIANT& key = arguments.front();
        if (key.vt != VT_I4 || key.lVal >= static_cast<long>(fields_.size())) {
            throw com::CallError(DISP_E_BADINDEX);
        }
        return com::Variant(ObjectOf(fields_[static_cast<std::size_t>(key.lVal)]).Get());
    });
    structure.object->Add(L"Fields", [&](auto) { return com::Variant(fromZero.Get()); });
    Next([this](Shown& dialog) {
        TypeIntoFirst(dialog, L"55");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(NewModule().As<ITamDialogs>()->EditValue(structure.object.Get()), S_OK);
    EXPECT_EQ(fields_[0].value, L"55");
    EXPECT_TRUE(fields_[1].writes.empty());
    EXPECT_TRUE(fields_[2].writes.empty());
}

} // namespace
} // namespace dialogs
