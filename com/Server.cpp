#include "com/Server.h"

#include "com/Boundary.h"
#include "com/Counted.h"
#include "com/Dll.h"
#include "com/Registry.h"

namespace com {

namespace {

class ClassFactory final : public Counted<IClassFactory> {
  public:
    explicit ClassFactory(const ClassEntry& entry) : entry_(entry) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) override {
        if (out == nullptr) {
            return E_POINTER;
        }
        *out = nullptr;
        if (outer != nullptr) {
            return CLASS_E_NOAGGREGATION;
        }
        return Guard(iid, [&] { Check(entry_.create(iid, out)); });
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        if (lock == FALSE) {
            return ThisDll().Unlock() ? S_OK : E_UNEXPECTED;
        }
        ThisDll().Lock();
        return S_OK;
    }

  private:
    const ClassEntry& entry_;
};

} // namespace

HRESULT GetClassObject(const ServerInfo& server, REFCLSID clsid, REFIID iid, void** out) noexcept {
    if (out == nullptr) {
        return E_POINTER;
    }
    *out = nullptr;
    for (const ClassEntry& entry : server.classes) {
        if (*entry.id == clsid && entry.create != nullptr) {
            HRESULT result = E_OUTOFMEMORY;
            const auto failure = Attempt([&] {
                // NOLINTNEXTLINE(bugprone-unhandled-exception-at-new): Attempt handles it
                const auto factory = Ref<IClassFactory>::Own(new ClassFactory(entry));
                result = factory->QueryInterface(iid, out);
            });
            return failure ? failure->code : result;
        }
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT CanUnloadNow() noexcept {
    return ThisDll().CanUnload() ? S_OK : S_FALSE;
}

HRESULT RegisterServer(const ServerInfo& server, Scope scope) noexcept {
    return Guard(IID_NULL, [&] { Register(server, scope); });
}

HRESULT UnregisterServer(const ServerInfo& server, Scope scope) noexcept {
    return Guard(IID_NULL, [&] { Unregister(server, scope); });
}

HRESULT Install(const ServerInfo& server, bool install, const wchar_t* commandLine) noexcept {
    const bool user = commandLine != nullptr && SameText(commandLine, L"user");
    const Scope scope = user ? Scope::User : Scope::Machine;
    return install ? RegisterServer(server, scope) : UnregisterServer(server, scope);
}

} // namespace com
