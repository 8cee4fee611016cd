#include "tests/package/RegistryFault.h"

#include <string_view>
#include <utility>

namespace package {

namespace {

RegistryFault* current = nullptr;

template <class F>
const void* Address(F* function) {
    return reinterpret_cast<const void*>(function);
}

} // namespace

RegistryFault::RegistryFault(HMODULE dll, int number, Kind kind)
    : number_(number)
    , kind_(kind)
    , createKey_(dll, "RegCreateKeyExW", Address(&RegistryFault::CreateKey))
    , setValue_(dll, "RegSetValueExW", Address(&RegistryFault::SetValue))
    , deleteTree_(dll, "RegDeleteTreeW", Address(&RegistryFault::DeleteTree))
    , deleteKey_(dll, "RegDeleteKeyW", Address(&RegistryFault::DeleteKey)) {
    current = this;
}

RegistryFault::RegistryFault(HMODULE dll, std::wstring protectedKey) : RegistryFault(dll, 0) {
    protectedKey_ = std::move(protectedKey);
}

RegistryFault::~RegistryFault() {
    current = nullptr;
}

bool RegistryFault::IsComplete() const noexcept {
    return createKey_.IsImported() && setValue_.IsImported() && deleteTree_.IsImported() &&
           deleteKey_.IsImported();
}

bool RegistryFault::Fails(LPCWSTR path) noexcept {
    ++writes_;
    if (!protectedKey_.empty()) {
        return path != nullptr && std::wstring_view(path).find(protectedKey_) != std::wstring_view::npos;
    }
    return number_ != 0 && (kind_ == Kind::Once ? writes_ == number_ : writes_ >= number_);
}

LSTATUS WINAPI RegistryFault::CreateKey(HKEY key, LPCWSTR path, DWORD reserved, LPWSTR type, DWORD options,
                                        REGSAM access, SECURITY_ATTRIBUTES* security, HKEY* result,
                                        DWORD* disposition) {
    const auto create = current->createKey_.Original<decltype(&RegCreateKeyExW)>();
    return current->Fails(path)
               ? ERROR_ACCESS_DENIED
               : create(key, path, reserved, type, options, access, security, result, disposition);
}

LSTATUS WINAPI RegistryFault::SetValue(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                                       DWORD size) {
    const auto set = current->setValue_.Original<decltype(&RegSetValueExW)>();
    return current->Fails() ? ERROR_ACCESS_DENIED : set(key, name, reserved, type, data, size);
}

LSTATUS WINAPI RegistryFault::DeleteTree(HKEY key, LPCWSTR path) {
    const auto deleteTree = current->deleteTree_.Original<decltype(&RegDeleteTreeW)>();
    return current->Fails(path) ? ERROR_ACCESS_DENIED : deleteTree(key, path);
}

LSTATUS WINAPI RegistryFault::DeleteKey(HKEY key, LPCWSTR path) {
    const auto deleteKey = current->deleteKey_.Original<decltype(&RegDeleteKeyW)>();
    return current->Fails(path) ? ERROR_ACCESS_DENIED : deleteKey(key, path);
}

} // namespace package
