// How much memory a check takes. The sanitizer of the native build counts it.

#if defined(__SANITIZE_ADDRESS__)

#include "check/Check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <string>
#include <utility>

// The sanitizer's own: its header is not installed with every compiler.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*allocated)(const volatile void*, std::size_t),
                                                         void (*freed)(const volatile void*));
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
// NOLINTEND(bugprone-reserved-identifier)

namespace {

std::atomic<std::size_t> peak = 0;

void OnAllocated(const volatile void* /*memory*/, std::size_t size) {
    peak = std::max<std::size_t>(peak, __sanitizer_get_current_allocated_bytes() + size);
}

void OnFreed(const volatile void* /*memory*/) {}

/// A stream of 8 MB; each logical address begins with this. The 10,000 findings that are listed take
/// some megabytes, whatever the size of the document: it must not be small.
std::string Stream(const std::string& address) {
    constexpr std::size_t kSize = std::size_t{8} << 20U;
    std::string text =
        "<Tam><Name>n</Name><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>1</TamObjID>"
        "<Attributes>\n";
    for (int i = 1; text.size() < kSize; ++i) {
        const std::string name = "AI" + std::to_string(i) + "_Gain";
        text += "    <" + name + ">\n      <VISIBLE>1</VISIBLE>\n      <SNVTTYPE>105</SNVTTYPE>\n" +
                "      <LOGICALADDRESS>" + address + std::to_string(i) +
                "</LOGICALADDRESS>\n      <VALUE>1.5</VALUE>\n    </" + name + ">\n";
    }
    return text + "</Attributes></Tam>";
}

TEST(MemoryTest, IsLessThanFourTimesTheText) {
    ASSERT_NE(__sanitizer_install_malloc_and_free_hooks(OnAllocated, OnFreed), 0);
    for (const char* const address : {"", "x"}) { // without findings, and with more than are listed
        std::string text = Stream(address);
        const std::size_t size = text.size();
        const std::size_t before = __sanitizer_get_current_allocated_bytes() - text.capacity();
        peak = before;
        const check::Result result = check::CheckBytes(std::move(text), {});
        EXPECT_EQ(result.kind, check::Kind::DeviceStream);
        EXPECT_LT(peak - before, 4 * size)
            << address << ": " << (peak - before) * 100 / size << " % of the text";
    }
}

} // namespace

#endif
