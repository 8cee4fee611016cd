#include "common/mSNVTDataConversion.h"

#include "common/ComponentState.h"
#include "common/ErrorReport.h"
#include "core/ValueText.h"

namespace tam {

std::wstring LocalizeValue(std::wstring_view number) {
    return MoveDecimalMark(number, State().DecimalSeparator);
}

std::wstring UnlocalizeValue(std::wstring_view number) noexcept {
    std::wstring text;
    Trap(L"O_Tam_id Module mSNVTDataConversion", L"Function UnlocalizeValue",
         [&] { text = MoveDecimalMark(number, State().DecimalSeparator); });
    return text;
}

} // namespace tam
