#include "component/Classes.h"

#include "appobject/CDBAppObject.h"
#include "internal/TamObjectManager.h"

#include <array>

namespace tam {

namespace {

template <class Class>
HRESULT Create(REFIID iid, void** out) {
    return Class::Make()->QueryInterface(iid, out);
}

constexpr int kTypeLibraries = 2;

/// OrvHost carries the library of the host interfaces too.
constexpr GUID kHostServicesLibrary{
    0x03814B01, 0xE40D, 0x4C62, {0xB8, 0x43, 0x07, 0x33, 0xB9, 0xAF, 0xEB, 0xC8}};

} // namespace

const com::ServerInfo& ThisServer() noexcept {
    static const std::array<com::ClassEntry, 2> classes{{
        {&__uuidof(::CDBAppObject), L"O_Tam_id.CDBAppObject", com::ProgIdRule::Own,
         L"Remote I/O module object", &Create<CDBAppObject>},
        {&__uuidof(::TamObjectManager), L"O_Tam_id.TamObjectManager", com::ProgIdRule::Own,
         L"Manager of channel objects", &Create<TamObjectManager>},
    }};
    static const com::ServerInfo server{classes, kTypeLibraries, kHostServicesLibrary};
    return server;
}

} // namespace tam
