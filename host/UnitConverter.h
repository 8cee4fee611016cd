#pragma once

#include "com/Object.h"
#include "host/Units.h"

#include <OrvDBFaces.h>
#include <OrvHost.h>

namespace orv {

/// What is set once for the whole host.
struct HostSettings {
    UnitSystem units = UnitSystem::Metric;
};
HostSettings& Settings() noexcept;

/// Converts a value of a type into the host's unit system and names the unit.
/// The unit system belongs to the host, not to a converter: each application
/// object has a converter of its own, and all follow one setting.
class UnitConverter final : public com::DualObject<UnitConverter, IUnitConverter, IUnitSettings> {
  public:
    static REFCLSID ClassId() noexcept { return __uuidof(::UnitConverter); }

    // IUnitConverter
    HRESULT STDMETHODCALLTYPE Convert(BSTR value, BSTR unit, BSTR* converted) override;
    HRESULT STDMETHODCALLTYPE Label(BSTR unit, BSTR* label) override;

    // IUnitSettings
    HRESULT STDMETHODCALLTYPE get_UnitSystem(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE put_UnitSystem(BSTR value) override;
};

} // namespace orv
