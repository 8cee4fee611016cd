#pragma once

#include "com/Registration.h"

#include <windows.h>

namespace com {

// The bodies of a DLL's exports. Each is a boundary: nothing is thrown.

/// CLASS_E_CLASSNOTAVAILABLE for a class that is not in the table or has no
/// creation. The factory refuses aggregation with CLASS_E_NOAGGREGATION.
HRESULT GetClassObject(const ServerInfo& server, REFCLSID clsid, REFIID iid, void** out) noexcept;
/// S_OK when no object lives and no factory is locked, else S_FALSE.
HRESULT CanUnloadNow() noexcept;
HRESULT RegisterServer(const ServerInfo& server, Scope scope) noexcept;
HRESULT UnregisterServer(const ServerInfo& server, Scope scope) noexcept;
/// `regsvr32 /n /i:user` registers for the user, any other text for the machine.
HRESULT Install(const ServerInfo& server, bool install, const wchar_t* commandLine) noexcept;

} // namespace com
