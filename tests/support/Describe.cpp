#include "tests/support/Describe.h"

#include "tests/support/Caller.h"
#include "tests/support/Recorder.h"

#include <ocidl.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace support {

namespace {

/// What leads back up, or is of no text.
constexpr std::array<std::wstring_view, 5> kLeftOut = {L"Parent", L"Icon", L"NewEnum", L"Stream",
                                                       L"UnitsManager"};
/// The collections, the points that they hold, and the macro connections of a project.
constexpr std::array<std::wstring_view, 7> kFollowed = {
    L"Inputs", L"Outputs", L"Attributes", L"SNVTType", L"SNVTCompatibles", L"Groups", L"Items"};

template <class List>
bool Has(const List& list, const std::wstring& name) {
    return std::any_of(list.begin(), list.end(),
                       [&](std::wstring_view known) { return SameName(name, std::wstring(known)); });
}

class Description {
  public:
    explicit Description(const Libraries& libraries) : libraries_(libraries) {}

    void Add(const std::wstring& path, IUnknown* object) {
        const CLSID id = ClassOf(object);
        const auto library = std::find_if(libraries_.begin(), libraries_.end(),
                                          [&](const TypeLibrary* known) { return known->Has(id); });
        if (library == libraries_.end()) {
            return;
        }
        for (const Interface& face : (*library)->ClassOf(id).interfaces) {
            com::Ref<IDispatch> dispatch;
            if (FAILED(object->QueryInterface(face.id, dispatch.PutVoid()))) {
                text_ += path + L": no interface\n";
                continue;
            }
            for (const Member& member : face.members) {
                if (member.kind == INVOKE_PROPERTYGET && member.Given() == 0 && !Has(kLeftOut, member.name)) {
                    Read(path + L"." + member.name, member, dispatch);
                }
            }
        }
        Enumerate(path, object);
    }
    std::wstring Take() { return std::move(text_); }

  private:
    void Read(const std::wstring& path, const Member& member, const com::Ref<IDispatch>& object) {
        com::Variant value;
        EXCEPINFO exception{};
        std::vector<VARIANT> none;
        const HRESULT result =
            Invoke(object.Get(), member.id, DISPATCH_PROPERTYGET, none, value.Put(), &exception);
        const std::wstring why = com::Text(exception.bstrDescription);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrHelpFile);
        SysFreeString(exception.bstrDescription);
        text_ += path + L" = " + (SUCCEEDED(result) ? Print(value.Get()) : L"! " + why) + L"\n";
        const bool isObject = value.Get().vt == VT_DISPATCH && value.Get().pdispVal != nullptr;
        if (isObject && Has(kFollowed, member.name)) {
            Add(path, value.Get().pdispVal);
        }
    }

    void Enumerate(const std::wstring& path, IUnknown* object) {
        const auto dispatch = com::Query<IDispatch>(object);
        DISPPARAMS none{};
        com::Variant value;
        const HRESULT result =
            dispatch->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT,
                             DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none, value.Put(), nullptr, nullptr);
        if (FAILED(result) || value.Get().vt != VT_UNKNOWN) {
            return;
        }
        const auto items = com::Query<IEnumVARIANT>(value.Get().punkVal);
        com::Variant item;
        for (int n = 1; items && items->Next(1, item.Put(), nullptr) == S_OK; ++n) {
            if (item.Get().vt == VT_DISPATCH) {
                Add(path + L"(" + std::to_wstring(n) + L")", item.Get().pdispVal);
            }
        }
    }

    const Libraries& libraries_;
    std::wstring text_;
};

} // namespace

CLSID ClassOf(IUnknown* object) {
    const auto provider = com::Query<IProvideClassInfo>(object);
    com::Ref<ITypeInfo> info;
    TYPEATTR* attributes = nullptr;
    if (!provider || FAILED(provider->GetClassInfo(info.Put())) || FAILED(info->GetTypeAttr(&attributes))) {
        return CLSID_NULL;
    }
    const CLSID id = attributes->guid;
    info->ReleaseTypeAttr(attributes);
    return id;
}

std::wstring Describe(const Libraries& libraries, IUnknown* object) {
    Description description(libraries);
    description.Add(L"", object);
    return description.Take();
}

} // namespace support
