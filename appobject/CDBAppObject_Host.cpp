#include "appobject/CDBAppObject.h"

#include "appobject/Pictures.h"
#include "com/Required.h"
#include "com/VariantReference.h"
#include "common/ComponentState.h"
#include "common/ErrorReport.h"
#include "common/resource.h"
#include "common/Unattended.h"

#include <shellapi.h>

#include <cstddef>

namespace tam {

namespace {

constexpr const wchar_t* kNoDatasheet = L"DataSheet not available";

// Answers of the shell below its mark of success.
constexpr INT_PTR kSucceeded = 32;
constexpr INT_PTR kNoAssociation = 31;
constexpr INT_PTR kFileNotFound = 2;

std::string AnsiOf(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_ACP, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string ansi(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, text.data(), length, ansi.data(), size, nullptr, nullptr);
    return ansi;
}

HWND WindowOf(const VARIANT& handle) {
    // 64-bit hosts hand over 64 bits, of which the system gives a meaning to the
    // lower 32 and lets the upper ones be zeros or signs.
    if constexpr (sizeof(void*) == 8) {
        if (handle.vt == VT_I8 || handle.vt == VT_UI8) {
            return reinterpret_cast<HWND>(static_cast<LONG_PTR>(static_cast<LONG>(handle.llVal)));
        }
    }
    com::Variant plain = com::CopyOf(handle);
    com::Variant number;
    com::Check(VariantChangeType(number.Put(), plain.Address(), 0, VT_I4));
    return reinterpret_cast<HWND>(static_cast<LONG_PTR>(number.Get().lVal));
}

} // namespace

STDMETHODIMP CDBAppObject::Show() {
    const auto kept = This<IAppObject>(); // what the host shows may drop the last reference
    isPlugInActive_ = true;
    Trap(L"IAppObject_Show Class Module CDBAppObject", L"Sub IAppObject_Show", [&] {
        if (!parent_) {
            return;
        }
        if (IsUnattended()) {
            WriteUnshown({L"view", ComponentTitle(), data_.placement.userName, {}, {}, {}});
            return;
        }
        const auto document = Required<IHostDocument>(parent_);
        com::Ref<IDispatch> shown;
        com::Call(document, &IHostDocument::get_View, shown.Put());
        com::Call(Required<IHostView>(shown), &IHostView::ShowObject);
    });
    EndPlugIn();
    return S_OK;
}

STDMETHODIMP CDBAppObject::get_Icon(IDispatch** value) {
    return Get(value, [&] {
        com::Ref<IDispatch> picture;
        com::Attempt(
            [&] { picture = PictureFromFile(State().AppPath + data_.identity.definitionName + L".ico"); });
        if (!picture) {
            com::Attempt([&] { picture = PictureFromIcon(TAM_ICON_LOGO); });
        }
        return picture;
    });
}

STDMETHODIMP CDBAppObject::ViewDatasheet(VARIANT ownerWindow) {
    com::Attempt([&] {
        if (!data_.datasheet.isAvailable) {
            ShowBox(kNoDatasheet, ComponentTitle());
            return;
        }
        if (IsUnattended()) {
            WriteUnshown({L"data sheet", ComponentTitle(), data_.datasheet.path, {}, {}, {}});
            return;
        }
        HWND owner = nullptr;
        com::Attempt([&] { owner = WindowOf(ownerWindow); });
        const std::string path = AnsiOf(data_.datasheet.path);
        // The working directory is the file's own path, as hosts have always seen it.
        const auto result = reinterpret_cast<INT_PTR>(
            ShellExecuteA(owner, "open", path.c_str(), "0", path.c_str(), SW_SHOWMAXIMIZED));
        if (result >= kSucceeded) {
            return;
        }
        if (result == kNoAssociation) {
            ShowBox(L"Viewer not Available. Please install the viewer to see the documentation",
                    ComponentTitle());
        } else if (result == kFileNotFound) {
            ShowBox(kNoDatasheet, ComponentTitle());
        } else {
            ShowBox(L"Visualization not allowed", ComponentTitle());
        }
    });
    return S_OK;
}

} // namespace tam
