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

/// O_Tam_id carries the second one too.
constexpr GUID kComponentLibrary{
    0xD912E3A3, 0xF582, 0x410E, {0x89, 0xB0, 0x8D, 0xEF, 0xF4, 0x42, 0x5A, 0xFA}};

template <class T>
HRESULT Create(REFIID iid, void** out) {
    return T::Make()->QueryInterface(iid, out);
}

/// A machine may have these services from its own host.
constexpr com::ProgIdRule kRule = com::ProgIdRule::Shared;

const com::ClassEntry kClasses[] = {
    {&__uuidof(::UnitConverter), L"UnitManager.Converter", kRule, L"Unit converter", Create<UnitConverter>},
    {&__uuidof(::DatabaseLocation), L"OrvHost.DatabaseLocation", kRule, L"Database location",
     Create<DatabaseLocation>},
    {&__uuidof(::CompilersInterop), L"ORV.QB.Interop.Compilers.CompilersInterop", kRule, L"Database compiler",
     Create<CompilersInterop>},
    {&__uuidof(::Project), L"OrvHost.Project", kRule, L"Project", Create<Project>},
    {&__uuidof(::GenericObject), L"O_Generic.CDBAppObject", kRule, L"Generic block", Create<GenericObject>},
    {&__uuidof(::LibraryService), L"OrvHost.LibraryService", kRule, L"Object library",
     Create<LibraryService>},
    {&__uuidof(::DeviceContext), L"OrvHost.DeviceContext", kRule, L"Device context", Create<DeviceContext>},
    {&__uuidof(::Device), L"OrvHost.Device", kRule, L"Device", Create<Device>},
};

} // namespace

com::ServerInfo Server() noexcept {
    return {kClasses, kLibraries, kComponentLibrary};
}

} // namespace orv
