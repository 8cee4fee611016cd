#include "com/StandardAccessible.h"

#include "com/Boundary.h"

namespace com {

namespace {

/// The system's part in accessibility, loaded when a screen reader first asks:
/// most hosts never need it.
template <class F>
F SystemFunction(const char* name) {
    static const HMODULE library = LoadLibraryExW(L"oleacc.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    CheckSet(library);
    const auto function = reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(library, name)));
    CheckSet(reinterpret_cast<const void*>(function));
    return function;
}

} // namespace

StandardAccessible::StandardAccessible(HWND window) {
    Check(SystemFunction<decltype(&CreateStdAccessibleObject)>("CreateStdAccessibleObject")(
        window, OBJID_CLIENT, __uuidof(IAccessible), plain_.PutVoid()));
}

LRESULT AnswerWith(IAccessible& accessible, WPARAM wParam) {
    return SystemFunction<decltype(&LresultFromObject)>("LresultFromObject")(__uuidof(IAccessible), wParam,
                                                                             &accessible);
}

} // namespace com
