#include "com/Conversion.h"

#include "core/RunTimeError.h"
#include "tests/support/ImportPatch.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using support::ImportPatch;

std::vector<std::wstring> freed;
void(STDAPICALLTYPE* realFree)(BSTR text);

void STDAPICALLTYPE CountFree(BSTR text) {
    if (text != nullptr) {
        freed.emplace_back(text);
    }
    realFree(text);
}

/// Texts that this program gives back to the system.
class ConversionBstrTest : public testing::Test {
  protected:
    ConversionBstrTest() {
        patch_.emplace(GetModuleHandleW(nullptr), "SysFreeString", reinterpret_cast<const void*>(&CountFree));
        realFree = patch_->Original<void(STDAPICALLTYPE*)(BSTR)>();
        freed.clear();
    }
    void SetUp() override { ASSERT_TRUE(patch_->IsImported()); }

  private:
    std::optional<ImportPatch> patch_;
};

TEST_F(ConversionBstrTest, GivesBackWhatItHeldBeforeACalleeFillsIt) {
    com::Bstr text(L"one");
    *text.Put() = SysAllocString(L"two");
    EXPECT_EQ(freed, std::vector<std::wstring>{L"one"});
    EXPECT_EQ(text.View(), L"two");
}

TEST_F(ConversionBstrTest, GivesItsTextBackOnce) {
    {
        com::Bstr text(L"one");
        com::Bstr other(L"two");
        text = std::move(other);
        EXPECT_EQ(text.View(), L"two");
    }
    EXPECT_EQ(freed.size(), 2U);
}

TEST_F(ConversionBstrTest, ADetachedTextIsTheCallersOwn) {
    BSTR taken = nullptr;
    {
        com::Bstr text(L"one");
        taken = text.Detach();
        EXPECT_EQ(text.View(), L"");
    }
    EXPECT_TRUE(freed.empty());
    SysFreeString(taken);
}

TEST(ConversionCheckTest, TellsWhatKeptANumberFromBeingRead) {
    EXPECT_NO_THROW(com::CheckConversion(S_OK));
    EXPECT_THROW(com::CheckConversion(E_OUTOFMEMORY), std::bad_alloc);
    for (const auto& [result, number] :
         {std::pair{DISP_E_OVERFLOW, 6}, std::pair{DISP_E_TYPEMISMATCH, 13}, std::pair{E_FAIL, 13}}) {
        try {
            com::CheckConversion(result);
            ADD_FAILURE() << "no error for " << result;
        } catch (const tam::RunTimeError& error) {
            EXPECT_EQ(error.Code(), static_cast<std::int32_t>(0x800A0000U + static_cast<unsigned>(number)));
        }
    }
}

} // namespace
