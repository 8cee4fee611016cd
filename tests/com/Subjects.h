#pragma once

#include "tests/com/HostServices.h"
#include "tests/support/Fixture.h"
#include "tests/support/TypeLibrary.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace contract {

using namespace support;

/// Objects that are made and looked at together.
enum class Family {
    /// A module, what is reached from it, and the object manager.
    Module,
    /// A channel object and its points.
    Channel,
    /// The host's project, device, converter, compiler and library.
    Host,
    /// The host's generic object and its points.
    Generic,
};
inline constexpr std::array kFamilies = {Family::Module, Family::Channel, Family::Host, Family::Generic};

/// One object that can be reached.
struct Subject {
    std::string name;
    /// None for an enumerator, which is no class of a library.
    std::optional<CLSID> classId;
    com::Ref<IUnknown> object;
};

/// A test over every object of the component and of the host services that can
/// be reached. At its end none of either lives.
class ContractTest : public support::ComponentTest {
  protected:
    void SetUp() override;
    void TearDown() override;

    /// The component's library, the host interfaces, the host services' library.
    static const TypeLibrary& Own() { return OwnLibrary(); }
    static const TypeLibrary& Faces() { return HostLibrary(); }
    static const TypeLibrary& Services();
    HostServices& Host() { return *host_; }

    /// A module with two points of each kind.
    com::Ref<IAppObject> Module();
    com::Ref<ITamObjectManager> Manager();
    /// A channel object with its points, on a device that holds a module.
    com::Ref<IAppObject> Channel();

    /// The objects of a family, made for this call: none of an earlier call is among them.
    std::vector<Subject> Subjects(Family family);
    std::vector<Subject> Subjects();
    /// Those of them that scripts can hold: all but the enumerators.
    std::vector<Subject> Scriptables(Family family);
    std::vector<Subject> Scriptables();
    static const Class& ClassOf(const Subject& subject);
    static const std::vector<Interface>& InterfacesOf(const Subject& subject);

  private:
    std::vector<Subject> ModuleSubjects();
    std::vector<Subject> ChannelSubjects();
    std::vector<Subject> HostSubjects();
    std::vector<Subject> GenericSubjects();
    com::Ref<IDevice> Device();

    std::optional<HostServices> host_;
};

} // namespace contract
