#pragma once

#include "tests/support/CalledFrom.h"
#include "tests/support/Fixture.h"

#include <string>
#include <vector>

namespace support {

/// There is one box, with this text, caption and icon.
inline void ExpectOnlyBox(const std::vector<bench::Box>& boxes, const std::wstring& text,
                          const std::wstring& caption, UINT icon = 0, const CalledFrom& = {}) {
    ASSERT_EQ(boxes.size(), 1u);
    ExpectBox(boxes[0], text, caption, icon);
}
/// There is one box, an error report with these texts.
inline void ExpectOnlyReport(const std::vector<bench::Box>& boxes, const std::wstring& description,
                             const std::wstring& callingObject, const std::wstring& callingFunction,
                             const std::wstring& source = L"O_Tam_id", const CalledFrom& = {}) {
    ASSERT_EQ(boxes.size(), 1u);
    ExpectReport(boxes[0], description, callingObject, callingFunction, source);
}

} // namespace support
