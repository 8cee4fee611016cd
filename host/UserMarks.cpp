#include "host/UserMarks.h"

#include <windows.h>

#include <cstddef>
#include <iterator>
#include <string>

namespace orv {

namespace {

std::wstring LocaleText(LCTYPE type) {
    // Both marks have at most three characters and the closing NUL.
    wchar_t text[8] = {};
    const int size = GetLocaleInfoW(LOCALE_USER_DEFAULT, type, text, static_cast<int>(std::size(text)));
    return {text, size > 0 ? static_cast<std::size_t>(size - 1) : 0};
}

} // namespace

NumberMarks UserMarks() {
    return {LocaleText(LOCALE_SDECIMAL), LocaleText(LOCALE_STHOUSAND)};
}

} // namespace orv
