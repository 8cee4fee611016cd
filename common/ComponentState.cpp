#include "common/ComponentState.h"

#include "com/Boundary.h"
#include "com/Conversion.h"
#include "com/Dll.h"
#include "common/resource.h"
#include "core/ValueText.h"

#include <cstddef>
#include <new>

namespace tam {

ComponentState& State() noexcept {
    // Never destroyed: when the process ends, the catalogue's own library may
    // be gone before this one.
    // In place: this must not fail for lack of memory.
    alignas(ComponentState) static std::byte place[sizeof(ComponentState)];
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): the one state of the component
    static ComponentState& state = *new (place) ComponentState;
    return state;
}

void InitDecimalSeparator() {
    com::Bstr half;
    com::Check(VarBstrFromR4(0.5F, LOCALE_USER_DEFAULT, 0, half.Put()));
    State().DecimalSeparator = DecimalSeparatorFrom(half.View());
}

std::wstring ResourceText(unsigned id) {
    const wchar_t* text = nullptr;
    const int length = LoadStringW(com::ThisDll().Instance(), id, reinterpret_cast<wchar_t*>(&text), 0);
    return length > 0 ? std::wstring(text, static_cast<std::size_t>(length)) : std::wstring();
}

std::wstring ComponentTitle() {
    return ResourceText(IDS_TITLE);
}

} // namespace tam
