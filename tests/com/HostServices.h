#pragma once

#include "com/Boundary.h"
#include "com/Ref.h"
#include "tests/support/Component.h"
#include "tests/support/HostDoubles.h"

#include <OrvHost.h>

#include <optional>
#include <string>

namespace contract {

/// OrvHost.dll, loaded without the registry, with the classes that the
/// component makes by their ProgIDs. Its object library has one definition.
class HostServices {
  public:
    HostServices();
    ~HostServices();
    HostServices(const HostServices&) = delete;
    HostServices& operator=(const HostServices&) = delete;

    static std::wstring DllPath();
    /// Name of the definition that is there.
    static constexpr const wchar_t* kDefinition = L"Channel";

    HRESULT ClassObject(REFCLSID clsid, REFIID iid, void** out) const;
    HRESULT CanUnload() const;

    template <class I>
    com::Ref<I> Create(REFCLSID clsid) const {
        com::Ref<IClassFactory> factory;
        com::Ref<I> object;
        com::Check(ClassObject(clsid, IID_IClassFactory, factory.PutVoid()));
        com::Check(factory->CreateInstance(nullptr, __uuidof(I), object.PutVoid()));
        return object;
    }

    /// The settings that are one for the whole host as they were at the start.
    void ResetSettings() const;

  private:
    HMODULE module_;
    support::TextFile definition_;
    std::optional<support::HostClass> generic_;
    std::optional<support::HostClass> library_;
};

} // namespace contract
