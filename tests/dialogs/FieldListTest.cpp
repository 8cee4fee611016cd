// The walk over a structure's fields, when the host's collection stops half-way.

#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"
#include "tests/support/ByNameDouble.h"
#include "tests/support/Values.h"

#include "com/LateBound.h"
#include "core/RunTimeError.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dialogs {
namespace {

class FieldListTest : public DialogTest {
  protected:
    /// A structure whose collection gives one field and then this answer.
    HRESULT Edit(HRESULT afterTheField) {
        auto collection = NamedObject::Make();
        collection->Add(L"_NewEnum", [this, afterTheField](auto) {
            std::vector<com::Variant> field;
            field.emplace_back(speed_.object.Get());
            return support::ObjectValue(support::Values::Make(std::move(field), afterTheField).Get());
        });
        HostPoint structure(L"All", L"", L"Struct");
        structure.object->Add(L"Fields", [&](auto) { return com::Variant(collection.Get()); });
        return NewModule().As<ITamDialogs>()->EditValue(structure.object.Get());
    }

    HostPoint speed_{L"Speed", L"40", L"UnsignedNumeric"};
};

TEST_F(FieldListTest, AListThatEndsIsShown) {
    Next([](Shown& dialog) {
        EXPECT_EQ(dialog.Rows(IDC_FIELDS), 1);
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(Edit(S_FALSE), S_OK);
}

TEST_F(FieldListTest, AListThatCannotBeReadToItsEndIsNotShownAsAWholeOne) {
    EXPECT_EQ(Edit(E_ACCESSDENIED), E_ACCESSDENIED);
    // A form whose opening failed gets as far as a window that closes at once.
    for (const bench::Box& box : Messages()) {
        EXPECT_EQ(box.caption, L"Edit Value");
    }
}

TEST_F(FieldListTest, AsksAFieldOnceForItsGeneralTypeAtOpening) {
    int asked = 0;
    speed_.type->Replace(L"GenType", [&](auto) {
        ++asked;
        return com::Variant(L"UnsignedNumeric");
    });
    Next([&](Shown& dialog) {
        EXPECT_EQ(asked, 1);
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(Edit(S_FALSE), S_OK);
}

TEST_F(FieldListTest, CancelRestoresWhatLiesBelowTenThousandFieldsAtMost) {
    for (const std::size_t flat : {9'998U, 9'999U}) {
        HostPoint deep(L"Deep", L"1", L"Float");
        HostPoint inner(L"Inner", L"whole", L"Struct");
        inner.SetFields({&deep});
        auto collection = NamedObject::Make();
        collection->Add(L"_NewEnum", [&](auto) {
            std::vector<com::Variant> fields;
            fields.emplace_back(inner.object.Get());
            for (std::size_t i = 0; i < flat; ++i) {
                fields.emplace_back(speed_.object.Get());
            }
            return support::ObjectValue(support::Values::Make(std::move(fields), S_FALSE).Get());
        });
        HostPoint structure(L"All", L"", L"Struct");
        structure.object->Add(L"Fields", [&](auto) { return com::Variant(collection.Get()); });
        Next([&](Shown& dialog) {
            EXPECT_EQ(dialog.Rows(IDC_FIELDS), static_cast<int>(flat) + 1);
            deep.value = L"2";
            speed_.value = L"50";
            dialog.Click(IDCANCEL);
        });
        EXPECT_EQ(NewModule().As<ITamDialogs>()->EditValue(structure.object.Get()), S_OK);
        EXPECT_EQ(deep.value, flat == 9'998U ? L"1" : L"2") << flat;
        EXPECT_EQ(speed_.value, L"40") << "the structure's own are restored however many they are";
    }
}

/// A structure of one field whose list of fields can be counted, and has this to say
/// when it is to be walked.
class FieldListWalkTest : public FieldListTest {
  protected:
    HRESULT EditCounted(const NamedObject::Get& enumerator) {
        HostPoint structure(L"All", L"", L"Struct");
        structure.SetFields({&speed_}, HostPoint::Walk::ByCount);
        const com::Variant fields = com::GetMember(*structure.object.Get(), L"Fields");
        static_cast<NamedObject*>(fields.Get().pdispVal)->Add(L"_NewEnum", enumerator);
        return NewModule().As<ITamDialogs>()->EditValue(structure.object.Get());
    }
};

TEST_F(FieldListWalkTest, AListWithoutAnEnumeratorIsCounted) {
    for (const HRESULT none : {DISP_E_MEMBERNOTFOUND, DISP_E_UNKNOWNNAME, E_NOTIMPL}) {
        Next([](Shown& dialog) {
            EXPECT_EQ(dialog.Rows(IDC_FIELDS), 1);
            dialog.Click(IDCANCEL);
        });
        EXPECT_EQ(EditCounted([none](auto) -> com::Variant { throw com::CallError(none); }), S_OK);
    }
}

TEST_F(FieldListWalkTest, AListWhoseEnumeratorIsNoObjectIsCounted) {
    for (const NamedObject::Get& enumerator :
         {NamedObject::Get([](auto) { return com::Variant(7L); }),
          NamedObject::Get([](auto) { return com::Variant(L"none"); }),
          NamedObject::Get([](auto) { return com::Variant(static_cast<IDispatch*>(nullptr)); }),
          NamedObject::Get([](auto) { return com::Variant(); })}) {
        Next([](Shown& dialog) {
            EXPECT_EQ(dialog.Rows(IDC_FIELDS), 1);
            dialog.Click(IDCANCEL);
        });
        EXPECT_EQ(EditCounted(enumerator), S_OK);
    }
}

TEST_F(FieldListWalkTest, AListThatRaisesThatItHasNoEnumeratorIsCounted) {
    // A member of a type library answers its code as an exception, with or without a text.
    // 438 and 445: the run-time errors for no such member, and for one that is not supported.
    for (const HRESULT none : {E_NOTIMPL, DISP_E_MEMBERNOTFOUND, DISP_E_UNKNOWNNAME,
                               MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 438),
                               MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 445)}) {
        SCOPED_TRACE(none);
        Next([](Shown& dialog) {
            EXPECT_EQ(dialog.Rows(IDC_FIELDS), 1);
            dialog.Click(IDCANCEL);
        });
        EXPECT_EQ(EditCounted([none](auto) -> com::Variant {
                      throw tam::RunTimeError(none, L"Host", L"There is no enumerator");
                  }),
                  S_OK);
    }
}

/// A data point that counts how often it is asked for the number of a member.
class AskedPoint final : public support::ByNameDouble {
  public:
    AskedPoint() : ByNameDouble({L"Name", L"Value", L"DispValue"}) {}
    STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override {
        asked += std::wstring_view(names[0]) == L"DispValue" ? 1 : 0;
        return ByNameDouble::GetIDsOfNames(iid, names, count, locale, ids);
    }

    int asked = 0;
    int read = 0;

  private:
    HRESULT Call(std::size_t member, WORD, DISPPARAMS&, VARIANT* result, EXCEPINFO*) override {
        read += member == 2 ? 1 : 0;
        *result = com::Variant(names_[member]).Detach();
        return S_OK;
    }
};

TEST_F(FieldListTest, AsksAFieldOnceForEachReadOfAMemberThatItMayLack) {
    const auto field = com::Ref<AskedPoint>::Own(new AskedPoint);
    auto collection = NamedObject::Make();
    collection->Add(L"_NewEnum", [&](auto) {
        std::vector<com::Variant> fields;
        fields.emplace_back(field.Get());
        return support::ObjectValue(support::Values::Make(std::move(fields), S_FALSE).Get());
    });
    HostPoint structure(L"All", L"", L"Struct");
    structure.object->Add(L"Fields", [&](auto) { return com::Variant(collection.Get()); });
    Next([](Shown& dialog) {
        EXPECT_EQ(dialog.Rows(IDC_FIELDS), 1);
        dialog.Click(IDCANCEL);
    });
    ASSERT_EQ(NewModule().As<ITamDialogs>()->EditValue(structure.object.Get()), S_OK);
    EXPECT_GE(field->read, 1);
    EXPECT_EQ(field->asked, field->read);
}

TEST_F(FieldListWalkTest, AListWhoseEnumeratorFailsIsToldAsTheHostToldIt) {
    const auto expectFailure = [this](HRESULT code, const NamedObject::Get& enumerator,
                                      const std::wstring& description) {
        EXPECT_EQ(EditCounted(enumerator), code);
        EXPECT_EQ(support::LastError().description, description);
        for (const bench::Box& box : Messages()) {
            EXPECT_EQ(box.caption, L"Edit Value");
        }
    };
    expectFailure(
        E_ACCESSDENIED, [](auto) -> com::Variant { throw com::CallError(E_ACCESSDENIED); }, L"");
    expectFailure(
        NamedObject::kRaised,
        [](auto) -> com::Variant {
            throw tam::RunTimeError(NamedObject::kRaised, L"Host", L"The list is locked");
        },
        L"The list is locked");
}

} // namespace
} // namespace dialogs
