#include "com/Dll.h"
#include "com/LackOfMemory.h"
#include "com/Server.h"
#include "common/ErrorReport.h"
#include "component/Classes.h"
#include "dialogs/frmError.h"

#include <windows.h>

#include <olectl.h>

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH) {
        com::ThisDll().Attach(instance);
        tam::PrepareForLackOfMemory();
        tam::SetErrorReportDialog(&tam::ShowErrorReport);
        DisableThreadLibraryCalls(instance);
    }
    return TRUE;
}

// An object lives on the thread that makes it, and each such thread comes by
// DllGetClassObject. Registering may be all that a thread wants.

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
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
    return tam::PrepareThisThread() ? com::RegisterServer(tam::ThisServer(), com::Scope::Machine)
                                    : E_OUTOFMEMORY;
}

STDAPI DllUnregisterServer() {
    return tam::PrepareThisThread() ? com::UnregisterServer(tam::ThisServer(), com::Scope::Machine)
                                    : E_OUTOFMEMORY;
}

STDAPI DllInstall(BOOL install, PCWSTR commandLine) {
    return tam::PrepareThisThread() ? com::Install(tam::ThisServer(), install != FALSE, commandLine)
                                    : E_OUTOFMEMORY;
}
