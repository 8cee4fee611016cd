#include "tests/host/GenericObjects.h"

#include "core/RunTimeError.h"

namespace hosttest {

namespace {

void SetLibrary(const std::wstring& folder) {
    EXPECT_EQ(S_OK, Create<ILibraryFolder>(__uuidof(LibraryService))->put_Folder(com::Bstr(folder).Get()));
}

std::wstring NameOf(IAttribute* attribute) {
    return TextOf(*attribute, &IAttribute::get_Name);
}

template <class Item, class Collection>
com::Ref<Item> ItemOf(const com::Ref<IAppObject>& object,
                      HRESULT (STDMETHODCALLTYPE IAppObject::*collection)(Collection**),
                      const wchar_t* index) {
    com::Ref<Collection> items;
    com::Ref<Item> item;
    EXPECT_EQ(S_OK, (object.Get()->*collection)(items.Put()));
    EXPECT_EQ(S_OK, items->get_Item(com::Bstr(index).Get(), item.Put()));
    return item;
}

} // namespace

TemporaryLibrary::TemporaryLibrary() : folder_((own_.Path() / L"").native()) {
    SetLibrary(folder_);
}

TemporaryLibrary::~TemporaryLibrary() {
    SetLibrary(L"");
}

void TemporaryLibrary::Write(const std::wstring& file, const std::string& text) {
    const HANDLE handle =
        CreateFileW((folder_ + file).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, handle);
    DWORD written = 0;
    EXPECT_NE(FALSE, WriteFile(handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr));
    CloseHandle(handle);
}

std::wstring SampleFolder() {
    const std::wstring& dll = HostDll::Get().Path();
    return dll.substr(0, dll.find_last_of(L'\\') + 1) + L"channels\\";
}

HRESULT Interceptor::Tell(const wchar_t* what, IAttribute* attribute,
                          const std::function<void(IAttribute&)>& act, VARIANT_BOOL* value) {
    return Get(value, [&] {
        calls.push_back(what + (L" " + NameOf(attribute)));
        if (act) {
            act(*attribute);
        }
        if (FAILED(result)) {
            throw tam::RunTimeError(result, L"Interceptor", L"The interceptor fails");
        }
        return handled;
    });
}

HRESULT Interceptor::Question(const wchar_t* what, IAttribute* attribute, VARIANT_BOOL* question,
                              VARIANT_BOOL* value) {
    asked = *question;
    if (!answer.empty()) {
        *question = answer.front() ? VARIANT_TRUE : VARIANT_FALSE;
    }
    return Tell(what, attribute, onQuestion, value);
}

STDMETHODIMP Interceptor::InterceptGetDataFromDevice(IAttribute* attribute, VARIANT_BOOL* value) {
    return Tell(L"fetch", attribute, onFetch, value);
}

STDMETHODIMP Interceptor::InterceptAttributeValueChanged(IAttribute* attribute, VARIANT_BOOL* value) {
    return Tell(L"value", attribute, onValue, value);
}

STDMETHODIMP Interceptor::InterceptTypeChanged(IAttribute* attribute, VARIANT_BOOL* value) {
    return Tell(L"type", attribute, onType, value);
}

STDMETHODIMP Interceptor::InterceptIsUnitsDependent(IAttribute* attribute, VARIANT_BOOL* isUnitsDependent,
                                                    VARIANT_BOOL* value) {
    return Question(L"units", attribute, isUnitsDependent, value);
}

STDMETHODIMP Interceptor::InterceptIsDifferential(IAttribute* attribute, VARIANT_BOOL* isDifferential,
                                                  VARIANT_BOOL* value) {
    return Question(L"differential", attribute, isDifferential, value);
}

com::Ref<IAppObject> NewObject(const wchar_t* definition) {
    auto object = Create<IAppObject>(__uuidof(GenericObject));
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(S_OK, object->Init(com::Bstr(definition).Get(), &done));
    EXPECT_EQ(VARIANT_TRUE, done);
    EXPECT_EQ(S_OK, object->Create());
    return object;
}

com::Ref<IInput> InputOf(const com::Ref<IAppObject>& object, const wchar_t* index) {
    return ItemOf<IInput>(object, &IAppObject::get_Inputs, index);
}

com::Ref<IOutput> OutputOf(const com::Ref<IAppObject>& object, const wchar_t* index) {
    return ItemOf<IOutput>(object, &IAppObject::get_Outputs, index);
}

com::Ref<IAttribute> AttributeOf(const com::Ref<IAppObject>& object, const wchar_t* index) {
    return ItemOf<IAttribute>(object, &IAppObject::get_Attributes, index);
}

} // namespace hosttest
