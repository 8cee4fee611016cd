// What a call by name does with the texts of the error that the called object
// raised: they are the caller's to give back.

#include "com/Conversion.h"
#include "tests/support/ByNameDouble.h"
#include "tests/support/Fixture.h"
#include "tests/support/ImportPatch.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace {

std::vector<BSTR> raised;
std::vector<BSTR> freed;
void(STDAPICALLTYPE* realFree)(BSTR text);

void STDAPICALLTYPE NoteFree(BSTR text) {
    freed.push_back(text);
    realFree(text);
}

BSTR Raised(const wchar_t* text) {
    raised.push_back(SysAllocString(text));
    return raised.back();
}

/// A data point whose members raise an error with all of its texts.
class Raiser final : public support::ByNameDouble {
  public:
    Raiser() : ByNameDouble({L"Name", L"Value", L"SNVTType"}) {}

  private:
    HRESULT Call(std::size_t, WORD, DISPPARAMS&, VARIANT*, EXCEPINFO* exception) override {
        exception->bstrSource = Raised(L"Host");
        exception->bstrDescription = Raised(L"The member is out of order");
        exception->bstrHelpFile = Raised(L"host.hlp");
        exception->scode = E_ACCESSDENIED;
        return DISP_E_EXCEPTION;
    }
};

class LateBoundErrorTest : public support::ComponentTest {};

TEST_F(LateBoundErrorTest, GivesBackTheTextsOfAnError) {
    const auto dialogs = NewModule().As<ITamDialogs>();
    const support::ImportPatch patch(Dll().Module(), "SysFreeString",
                                     reinterpret_cast<const void*>(&NoteFree));
    ASSERT_TRUE(patch.IsImported());
    realFree = patch.Original<void(STDAPICALLTYPE*)(BSTR)>();
    raised.clear();
    freed.clear();
    const auto point = com::Ref<Raiser>::Own(new Raiser);
    EXPECT_EQ(dialogs->EditValue(point.Get()), E_ACCESSDENIED);
    ASSERT_FALSE(raised.empty());
    for (const BSTR text : raised) {
        // Its place may be used again, and so come up more than once.
        EXPECT_GE(std::count(freed.begin(), freed.end(), text), 1);
    }
}

} // namespace
