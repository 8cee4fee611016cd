#include "host/Classes.h"

#include "host/CompilersInterop.h"
#include "host/DatabaseLocation.h"
#include "host/Device.h"
#include "host/DeviceContext.h"
#include "host/GenericObject.h"
#include "host/LibraryService.h"
#include "host/Project.h"
#include "host/UnitConverter.h"

namespace orv {

namespace {

/// Resources 1 and 2: the host services and the interfaces that they share.
constexpr int kLibraries = 2;

template <class T>
HRESULT Create(REFIID iid, void** out) {
    return T::Make()->QueryInterface(iid, out);
}

const com::ClassEntry kClasses[] = {
    {&__uuidof(::UnitConverter), L"UnitManager.Converter", L"Unit converter", Create<UnitConverter>},
    {&__uuidof(::DatabaseLocation), L"OrvHost.DatabaseLocation", L"Database location",
     Create<DatabaseLocation>},
    {&__uuidof(::CompilersInterop), L"ORV.QB.Interop.Compilers.CompilersInterop", L"Database compiler",
     Create<CompilersInterop>},
    {&__uuidof(::Project), L"OrvHost.Project", L"Project", Create<Project>},
    {&__uuidof(::GenericObject), L"O_Generic.CDBAppObject", L"Generic block", Create<GenericObject>},
    {&__uuidof(::LibraryService), L"OrvHost.LibraryService", L"Object library", Create<LibraryService>},
    {&__uuidof(::DeviceContext), L"OrvHost.DeviceContext", L"Device context", Create<DeviceContext>},
    {&__uuidof(::Device), L"OrvHost.Device", L"Device", Create<Device>},
};

} // namespace

com::ServerInfo Server() noexcept {
    return {kClasses, kLibraries};
}

} // namespace orv
