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

} // namespace

const com::ServerInfo& ThisServer() noexcept {
    static const std::array<com::ClassEntry, 2> classes{{
        {&__uuidof(::CDBAppObject), L"O_Tam_id.CDBAppObject", com::ProgIdRule::Own,
         L"Remote I/O module object", &Create<CDBAppObject>},
        {&__uuidof(::TamObjectManager), L"O_Tam_id.TamObjectManager", com::ProgIdRule::Own,
         L"Manager of channel objects", &Create<TamObjectManager>},
    }};
    static const com::ServerInfo server{classes, kTypeLibraries};
    return server;
}

} // namespace tam
