#include "tests/points/Points.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

using namespace support;
using namespace points;

namespace {

class ForeignEntry final : public com::DualObject<ForeignEntry, ICompatibleSNVT> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    explicit ForeignEntry(std::wstring id) : id_(std::move(id)) {}
    STDMETHODIMP get_ID(BSTR* value) override { return Answer(value, id_); }

  private:
    std::wstring id_;
};

/// A list of another component; it knows nothing but its entries.
class ForeignList final : public com::DualObject<ForeignList, ICompatibleSNVTs> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    std::vector<com::Ref<ForeignEntry>> entries;
    HRESULT countResult = S_OK;

    STDMETHODIMP Add(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_Count(long* value) override {
        *value = static_cast<long>(entries.size());
        return countResult;
    }
    STDMETHODIMP Exists(BSTR, VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Item(long position, ICompatibleSNVT** value) override {
        *value = com::Ref<ICompatibleSNVT>(entries.at(static_cast<std::size_t>(position) - 1)).Detach();
        return S_OK;
    }
    STDMETHODIMP Merge(ICompatibleSNVTs*, ICompatibleSNVTs**) override { return E_NOTIMPL; }
    STDMETHODIMP get_NewEnum(IUnknown**) override { return E_NOTIMPL; }
    STDMETHODIMP Remove(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP ToString(BSTR*) override { return E_NOTIMPL; }
};

/// Merging with a list that is not the component's own.
class ForeignListTest : public PointsTest {
  protected:
    com::Ref<ForeignList> other = ForeignList::Make();

    void Give(std::initializer_list<const wchar_t*> ids) {
        other->entries.clear();
        for (const wchar_t* id : ids) {
            other->entries.push_back(ForeignEntry::Make(id));
        }
    }
    com::Ref<ICompatibleSNVTs> Own(const std::wstring& ids) {
        module = WithInputs(L"<In1><SNVTCOMPATIBILITYLIST>" + ids + L"</SNVTCOMPATIBILITYLIST></In1>");
        return Object(Input(module, L"1"), &IInput::get_SNVTCompatibles);
    }
    std::wstring Merged(const std::wstring& ids, const CalledFrom& = {}) {
        com::Ref<ICompatibleSNVTs> result;
        EXPECT_EQ(Own(ids)->Merge(other.Get(), result.Put()), S_OK);
        return result ? Text(result, &ICompatibleSNVTs::ToString) : L"(none)";
    }
};

TEST_F(ForeignListTest, MergesInTheOthersOrder) {
    Give({L"3", L"2", L"9", L"3"});
    EXPECT_EQ(Merged(L"1,2,3"), L"3,2");
}

TEST_F(ForeignListTest, TakesAnIdentifierAsAWhole) {
    // No identifier of the own list has a comma or is empty: such entries have
    // no counterpart, and they do not end or split the walk.
    Give({L"1,2", L"", L"3"});
    EXPECT_EQ(Merged(L"1,2,3"), L"3");
}

TEST_F(ForeignListTest, ComparesExactly) {
    Give({L"a", L" B", L"c"});
    EXPECT_EQ(Merged(L"A, B,c"), L" B,c");
}

TEST_F(ForeignListTest, HandsItsFailureToTheCaller) {
    const auto list = Own(L"1");
    com::Ref<ICompatibleSNVTs> result;
    Give({L"1"});
    other->countResult = E_ACCESSDENIED;
    EXPECT_EQ(list->Merge(other.Get(), result.Put()), E_ACCESSDENIED);
    EXPECT_FALSE(result);
    other->countResult = S_OK;
    other->entries[0].Reset();
    EXPECT_EQ(list->Merge(other.Get(), result.Put()), kObjectNotSet);
    EXPECT_FALSE(result);
}

} // namespace
