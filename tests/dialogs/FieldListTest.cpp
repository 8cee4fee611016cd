// The walk over a structure's fields, when the host's collection stops half-way.

#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"

#include "com/LateBound.h"

namespace dialogs {
namespace {

/// Gives one field, then fails.
class HalfEnumerator final : public IEnumVARIANT {
  public:
    HalfEnumerator(IDispatch* field, HRESULT failure) : field_(field), failure_(failure) {}
    virtual ~HalfEnumerator() = default;

    STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
        const bool known = iid == IID_IUnknown || iid == IID_IEnumVARIANT;
        *out = known ? this : nullptr;
        if (known) {
            AddRef();
        }
        return known ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --references_;
        if (left == 0) {
            delete this;
        }
        return left;
    }
    STDMETHODIMP Next(ULONG, VARIANT* items, ULONG* fetched) override {
        *fetched = 0;
        if (given_) {
            return failure_;
        }
        given_ = true;
        *items = com::Variant(field_.Get()).Detach();
        *fetched = 1;
        return S_OK;
    }
    STDMETHODIMP Skip(ULONG) override { return E_NOTIMPL; }
    STDMETHODIMP Reset() override { return E_NOTIMPL; }
    STDMETHODIMP Clone(IEnumVARIANT** out) override {
        *out = nullptr;
        return E_NOTIMPL;
    }

  private:
    com::Ref<IDispatch> field_;
    HRESULT failure_;
    ULONG references_ = 1;
    bool given_ = false;
};

class FieldListTest : public DialogTest {
  protected:
    /// A structure whose collection gives one field and then this answer.
    HRESULT Edit(HRESULT afterTheField) {
        auto collection = NamedObject::Make();
        collection->Add(L"_NewEnum", [this, afterTheField](auto) {
            com::Variant result;
            VARIANT* value = result.Put();
            value->vt = VT_UNKNOWN;
            value->punkVal = new HalfEnumerator(speed_.object.Get(), afterTheField);
            return result;
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
