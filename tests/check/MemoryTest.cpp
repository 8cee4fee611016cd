// How much memory a check takes. The sanitizer of the native build counts it.

#if defined(__SANITIZE_ADDRESS__)

#include "check/Check.h"
#include "check/Output.h"

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
extern "C" std::size_t __sanitizer_get_allocated_size(const volatile void* memory);
// NOLINTEND(bugprone-reserved-identifier)

namespace {

// Counted here: the sanitizer's own sum has its guards around each piece in it, and what is freed.
std::atomic<std::size_t> current = 0;
std::atomic<std::size_t> peak = 0;

void OnAllocated(const volatile void* /*memory*/, std::size_t size) {
    current += size;
    peak = std::max<std::size_t>(peak, current);
}

void OnFreed(const volatile void* memory) {
    // What was there before the count began is not in it.
    current -= std::min<std::size_t>(current, __sanitizer_get_allocated_size(memory));
}

/// A stream of so many megabytes; each logical address begins with this.
std::string Stream(std::size_t megabytes, const std::string& address) {
    const std::size_t size = megabytes << 20U;
    std::string text =
        "<Tam><Name>n</Name><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>1</TamObjID>"
        "<Attributes>\n";
    for (int i = 1; text.size() < size; ++i) {
        const std::string name = "AI" + std::to_string(i) + "_Gain";
        text += "    <" + name + ">\n      <VISIBLE>1</VISIBLE>\n      <SNVTTYPE>105</SNVTTYPE>\n" +
                "      <LOGICALADDRESS>" + address + std::to_string(i) +
                "</LOGICALADDRESS>\n      <VALUE>1.5</VALUE>\n    </" + name + ">\n";
    }
    return text + "</Attributes></Tam>";
}

/// What a check of a file of this text takes at most, in hundredths of the text.
std::size_t MostOf(std::string text) {
    text.shrink_to_fit(); // as a file is read
    const std::size_t size = text.size();
    current = peak = text.capacity();
    check::FileResult file{"a.xml", check::CheckBytes(std::move(text), {}), ""};
    EXPECT_EQ(file.result.kind, check::Kind::DeviceStream);
    std::size_t printed = 0;
    check::PrintSarif({&file, 1}, "tamcheck", [&](const std::string& piece) { printed += piece.size(); });
    EXPECT_GT(printed, 0u);
    return peak * 100 / size;
}

TEST(MemoryTest, IsLessThanFourTimesTheText) {
    ASSERT_NE(__sanitizer_install_malloc_and_free_hooks(OnAllocated, OnFreed), 0);
    for (const std::size_t megabytes : {1U, 2U, 4U}) {
        for (const char* const address : {"", "x"}) { // without findings, and with one in each point
            EXPECT_LT(MostOf(Stream(megabytes, address)), 400u) << megabytes << " MB, " << address;
        }
    }
}

} // namespace

#endif
