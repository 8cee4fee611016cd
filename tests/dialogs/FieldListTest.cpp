// The walk over a structure's fields, when the host's collection stops half-way.

#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"
#include "tests/support/Values.h"

#include "com/LateBound.h"

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

} // namespace
} // namespace dialogs
