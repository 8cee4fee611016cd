#include "tests/package/MemoryRegistry.h"
#include "tests/package/Dll.h"
#include "tests/package/Snapshot.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace package {

namespace {

using MemoryRegistryTest = RegistryTest;

/// A value of Software\Classes itself, which some systems have and others lack.
class ValueOfThePlace {
  public:
    ValueOfThePlace() {
        RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, nullptr, 0, KEY_WRITE, nullptr, &key_,
                        nullptr);
        constexpr wchar_t kText[] = L"its own";
        isSet_ = RegSetValueExW(key_, kName, 0, REG_SZ, reinterpret_cast<const BYTE*>(kText), sizeof kText) ==
                 ERROR_SUCCESS;
    }
    ~ValueOfThePlace() {
        RegDeleteValueW(key_, kName);
        RegCloseKey(key_);
    }
    ValueOfThePlace(const ValueOfThePlace&) = delete;
    ValueOfThePlace& operator=(const ValueOfThePlace&) = delete;

    bool IsSet() const noexcept { return isSet_; }

  private:
    static constexpr const wchar_t* kName = L"O_Tam_id test of the place";
    HKEY key_ = nullptr;
    bool isSet_ = false;
};

TEST_F(MemoryRegistryTest, HasTheValuesOfThePlaceItself) {
    const ValueOfThePlace value;
    ASSERT_TRUE(value.IsSet());
    const auto system = Snapshot(Scope::User);
    ASSERT_EQ("1 its own", system.at("HKCU  : O_Tam_id test of the place"));
    const MemoryRegistry memory(component.Module(), Scope::User);
    EXPECT_EQ("", Difference(system, memory.LinesOf(memory.Content())));
}

} // namespace

} // namespace package
