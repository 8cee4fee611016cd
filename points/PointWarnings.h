#pragma once

#include "common/ErrorReport.h"

#include <windows.h>

#include <string>

namespace tam {

/// The warning for a point whose definition names no type.
inline void WarnNoCompatibilityList(const std::wstring& pointName, const std::wstring& ownerName) {
    ShowBox(pointName + L": SNVT Compatibility list not defined into the XML file of the object " +
                ownerName + L".",
            L"Warning", MB_ICONSTOP);
}

} // namespace tam
