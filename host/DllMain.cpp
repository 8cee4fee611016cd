#include "com/Module.h"
#include "com/Server.h"
#include "host/Classes.h"

#include <windows.h>

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        com::ThisModule().Attach(instance);
        DisableThreadLibraryCalls(instance);
    }
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
    return com::GetClassObject(orv::Server(), clsid, iid, out);
}

STDAPI DllCanUnloadNow() {
    return com::CanUnloadNow();
}

STDAPI DllRegisterServer() {
    return com::RegisterServer(orv::Server(), com::Scope::Machine);
}

STDAPI DllUnregisterServer() {
    return com::UnregisterServer(orv::Server(), com::Scope::Machine);
}

STDAPI DllInstall(BOOL install, PCWSTR commandLine) {
    return com::Install(orv::Server(), install != FALSE, commandLine);
}

} // extern "C"
