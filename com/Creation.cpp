#include "com/Creation.h"

#include "com/Boundary.h"
#include "core/RunTimeError.h"

#include <objbase.h>

namespace com {

namespace {

constexpr DWORD kServers = CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER;

/// A class may be registered for programs of the other kind alone.
constexpr const wchar_t* kPrograms = sizeof(void*) == 4 ? L"32-bit programs" : L"64-bit programs";

constexpr HRESULT CodeOf(LONG windowsError) noexcept {
    return HRESULT_FROM_WIN32(windowsError);
}

/// COM has no code for a DLL that is not there: it passes the loader's on.
bool IsOfTheLoader(HRESULT code) noexcept {
    return code == CO_E_DLLNOTFOUND || code == CO_E_ERRORINDLL || code == CodeOf(ERROR_MOD_NOT_FOUND) ||
           code == CodeOf(ERROR_FILE_NOT_FOUND) || code == CodeOf(ERROR_BAD_EXE_FORMAT);
}

std::wstring TextOf(REFCLSID clsid) {
    wchar_t text[40] = {};
    StringFromGUID2(clsid, text, 40);
    return text;
}

[[noreturn]] void Throw(HRESULT code, const std::wstring& text) {
    if (code == E_OUTOFMEMORY) {
        throw CallError(code);
    }
    throw tam::RunTimeError(code, {}, text);
}

/// COM answers one code for a class that is not there and for what the class
/// itself answers. A second look tells them apart.
bool HasFactory(REFCLSID clsid, HRESULT& code) {
    Ref<IClassFactory> factory;
    const HRESULT result = CoGetClassObject(clsid, kServers, nullptr, IID_IClassFactory, factory.PutVoid());
    if (FAILED(result)) {
        factory.Detach();
        code = result;
    }
    return SUCCEEDED(result);
}

[[noreturn]] void ThrowNotCreated(HRESULT code, REFCLSID clsid, const std::wstring& name) {
    HRESULT reason = code;
    if (HasFactory(clsid, reason)) {
        Failure failure;
        failure.code = code;
        Throw(code, name + L" cannot be created: " + failure.Description());
    }
    if (IsOfTheLoader(reason)) {
        Throw(code, name + L" cannot be loaded: the DLL of its class " + TextOf(clsid) +
                        L" is not there, lacks another DLL, or is not for " + kPrograms);
    }
    Throw(code, name + L" is not registered: its class " + TextOf(clsid) + L" has no DLL for " + kPrograms);
}

} // namespace

void CreateByClass(REFCLSID clsid, const std::wstring& name, REFIID iid, void** object) {
    const HRESULT result = CoCreateInstance(clsid, nullptr, kServers, iid, object);
    if (FAILED(result)) {
        *object = nullptr;
        ThrowNotCreated(result, clsid, name);
    }
}

Ref<IDispatch> CreateByProgId(const std::wstring& progId) {
    CLSID clsid{};
    const HRESULT result = CLSIDFromProgID(progId.c_str(), &clsid);
    if (FAILED(result)) {
        Throw(result, progId + L" is not registered: no class has this name");
    }
    return CreateByClass<IDispatch>(clsid, progId);
}

} // namespace com
