#include "com/Module.h"
#include "com/Server.h"
#include "component/Classes.h"
#include "component/MemoryReserve.h"

#include <windows.h>

#include <olectl.h>

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH) {
        com::ThisModule().Attach(instance);
        tam::PrepareForLackOfMemory();
        DisableThreadLibraryCalls(instance);
    }
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
    // An object lives on the thread that makes it, and each such thread comes by here.
    if (out != nullptr && !tam::PrepareThisThread()) {
        *out = nullptr;
        return E_OUTOFMEMORY;
    }
    return com::GetClassObject(tam::ThisServer(), clsid, iid, out);
}

STDAPI DllCanUnloadNow() {
    return com::CanUnloadNow();
}

STDAPI DllRegisterServer() {
    return com::RegisterServer(tam::ThisServer(), com::Scope::Machine);
}

STDAPI DllUnregisterServer() {
    return com::UnregisterServer(tam::ThisServer(), com::Scope::Machine);
}

STDAPI DllInstall(BOOL install, PCWSTR commandLine) {
    return com::Install(tam::ThisServer(), install != FALSE, commandLine);
}
