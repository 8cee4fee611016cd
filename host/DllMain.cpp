#include "com/Dll.h"
#include "com/LackOfMemory.h"
#include "com/Server.h"
#include "host/Classes.h"

#include <windows.h>

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        com::ThisDll().Attach(instance);
        tam::PrepareForLackOfMemory();
        DisableThreadLibraryCalls(instance);
    }
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
    if (out != nullptr && !tam::PrepareThisThread()) {
        *out = nullptr;
        return E_OUTOFMEMORY;
    }
    return com::GetClassObject(orv::Server(), clsid, iid, out);
}

STDAPI DllCanUnloadNow() {
    return com::CanUnloadNow();
}

STDAPI DllRegisterServer() {
    return tam::PrepareThisThread() ? com::RegisterServer(orv::Server(), com::Scope::Machine) : E_OUTOFMEMORY;
}

STDAPI DllUnregisterServer() {
    return tam::PrepareThisThread() ? com::UnregisterServer(orv::Server(), com::Scope::Machine)
                                    : E_OUTOFMEMORY;
}

STDAPI DllInstall(BOOL install, PCWSTR commandLine) {
    return tam::PrepareThisThread() ? com::Install(orv::Server(), install != FALSE, commandLine)
                                    : E_OUTOFMEMORY;
}

} // extern "C"
