#pragma once

#include "tests/com/TypeLibrary.h"
#include "tests/support/Fixture.h"

#include <optional>
#include <string>
#include <vector>

namespace contract {

/// One object that a host can reach.
struct Subject {
    std::string name;
    /// None for an enumerator, which is no class of the library.
    std::optional<CLSID> classId;
    com::Ref<IUnknown> object;
};

/// The host's device as the object manager asks it.
class Context final : public com::DualObject<Context, IDeviceContext> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    STDMETHODIMP get_Document(IDispatch** value) override;
    STDMETHODIMP get_FirmwareVersion(BSTR* value) override;
};

/// A test over every object that can be reached from a loaded module, and the
/// object manager.
class ContractTest : public support::ComponentTest {
  protected:
    void SetUp() override;

    const TypeLibrary& Own() { return *own_; }
    const TypeLibrary& Host() { return *host_; }

    /// A module with two points of each kind. The second input is connected to
    /// a type, so that the type's object can be reached from it.
    com::Ref<IAppObject> Module();
    /// All objects, made anew: no object of an earlier call is among them.
    std::vector<Subject> Subjects();
    /// Those of them that scripts can hold: all but the enumerators.
    std::vector<Subject> Scriptables();
    const std::vector<Interface>& InterfacesOf(const Subject& subject);
    com::Ref<ITamObjectManager> Manager();

  private:
    std::optional<TypeLibrary> own_;
    std::optional<TypeLibrary> host_;
};

} // namespace contract
