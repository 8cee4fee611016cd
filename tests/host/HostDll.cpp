#include "tests/host/HostDll.h"

#include "tests/Places.h"

#include <cstddef>

namespace hosttest {

namespace {

template <class F>
F As(FARPROC function) {
    return reinterpret_cast<F>(reinterpret_cast<void*>(function));
}

} // namespace

HostDll::HostDll() : path_((tests::ProgramFolder() / L"OrvHost.dll").native()) {
    // The DLL stays until the program ends.
    // cppcheck-suppress noDestructor
    module_ = LoadLibraryW(path_.c_str());
    EXPECT_NE(nullptr, module_) << "OrvHost.dll does not load, error " << GetLastError();
}

HostDll& HostDll::Get() {
    static HostDll dll;
    return dll;
}

FARPROC HostDll::Export(const char* name) const {
    return GetProcAddress(module_, name);
}

HRESULT HostDll::ClassObject(REFCLSID clsid, REFIID iid, void** out) const {
    using Function = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    const auto function = As<Function>(Export("DllGetClassObject"));
    return function == nullptr ? E_NOTIMPL : function(clsid, iid, out);
}

HRESULT HostDll::CanUnloadNow() const {
    using Function = HRESULT(STDAPICALLTYPE*)();
    const auto function = As<Function>(Export("DllCanUnloadNow"));
    return function == nullptr ? E_NOTIMPL : function();
}

std::wstring LastError() {
    com::Ref<IErrorInfo> info;
    com::Bstr text;
    if (GetErrorInfo(0, info.Put()) != S_OK || FAILED(info->GetDescription(text.Put()))) {
        return L"(no error object)";
    }
    return std::wstring(text.View());
}

std::wstring DecimalMark() {
    wchar_t text[8] = {};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, text, 8);
    return text;
}

std::wstring Local(std::wstring_view number) {
    std::wstring text(number);
    const std::size_t mark = text.find(L'.');
    if (mark != std::wstring::npos) {
        text.replace(mark, 1, DecimalMark());
    }
    return text;
}

} // namespace hosttest
