// The walk over a structure's fields, when the host's collection stops half-way.

#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"
#include "tests/support/Values.h"

#include "com/LateBound.h"
#include "core/RunTimeError.h"

#include <string>
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
