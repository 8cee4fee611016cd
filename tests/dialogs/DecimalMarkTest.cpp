#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/support/ImportPatch.h"

#include <string>

// A user who changes the decimal mark while a module is open.

namespace dialogs {
namespace {

using support::DecimalMark;

/// What one half is written like from now on.
std::wstring otherHalf;

HRESULT WINAPI WriteOtherHalf(FLOAT, LCID, ULONG, BSTR* text) {
    *text = com::Bstr(otherHalf).Detach();
    return S_OK;
}

class DecimalMarkTest : public DialogTest {};

TEST_F(DecimalMarkTest, IsReadAgainWhenTheNumberEditorOpens) {
    const auto point = Attribute(kSigned, L"21.5");
    const std::wstring other = DecimalMark() == L"." ? L"," : L".";
    otherHalf = L"0" + other + L"5";
    const support::ImportPatch patch(Dll().Module(), "VarBstrFromR4",
                                     reinterpret_cast<const void*>(&WriteOtherHalf));
    ASSERT_TRUE(patch.IsImported());
    Edit(point, [&](Shown& dialog) {
        EXPECT_EQ(dialog.Text(IDC_CURRENT), L"21" + other + L"5 \u00B0C");
        EXPECT_EQ(dialog.Text(IDC_NEW_VALUE), L"21" + other + L"5");
        EXPECT_EQ(dialog.Text(IDC_MIN), L"-100" + other + L"5 \u00B0C");
        EXPECT_EQ(dialog.Text(IDC_MAX), L"500" + other + L"25 \u00B0C");
        dialog.Type(IDC_NEW_VALUE, L"3" + other);
        EXPECT_EQ(dialog.Text(IDC_NEW_VALUE), L"3" + other) << "it is the mark that can be typed";
        dialog.Click(IDCANCEL);
    });
}

} // namespace
} // namespace dialogs
