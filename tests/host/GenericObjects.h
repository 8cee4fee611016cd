#pragma once

#include "com/Object.h"
#include "tests/host/HostDll.h"
#include "tests/Places.h"

#include <functional>
#include <string>
#include <vector>

// What the tests of the generic object, its library and its devices share.

namespace hosttest {

/// A folder of definitions, made for a test, that is the host's library while
/// this object lives.
class TemporaryLibrary {
  public:
    TemporaryLibrary();
    ~TemporaryLibrary();
    TemporaryLibrary(const TemporaryLibrary&) = delete;
    TemporaryLibrary& operator=(const TemporaryLibrary&) = delete;

    /// With a closing backslash.
    const std::wstring& Folder() const noexcept { return folder_; }
    /// Writes a file as UTF-8.
    void Write(const std::wstring& file, const std::string& text);

  private:
    tests::OwnFolder own_;
    std::wstring folder_;
};

/// The folder of the sample definitions, beside the test program.
std::wstring SampleFolder();

/// An interceptor that writes down what it is told ("value Gain"), does what
/// the test wants meanwhile and answers as it is told.
class Interceptor final : public com::DualObject<Interceptor, IAttributeInterceptor> {
  public:
    static REFCLSID ClassId() noexcept { return CLSID_NULL; }

    std::vector<std::wstring> calls;
    bool handled = true;
    HRESULT result = S_OK;
    /// Answer to the two questions; nothing leaves it as it came.
    std::vector<bool> answer;
    /// What came in with the last question.
    VARIANT_BOOL asked = VARIANT_FALSE;
    std::function<void(IAttribute&)> onFetch;
    std::function<void(IAttribute&)> onValue;
    std::function<void(IAttribute&)> onType;
    /// At either question.
    std::function<void(IAttribute&)> onQuestion;

    STDMETHODIMP InterceptGetDataFromDevice(IAttribute* attribute, VARIANT_BOOL* value) override;
    STDMETHODIMP InterceptAttributeValueChanged(IAttribute* attribute, VARIANT_BOOL* value) override;
    STDMETHODIMP InterceptTypeChanged(IAttribute* attribute, VARIANT_BOOL* value) override;
    STDMETHODIMP InterceptIsUnitsDependent(IAttribute* attribute, VARIANT_BOOL* isUnitsDependent,
                                           VARIANT_BOOL* value) override;
    STDMETHODIMP InterceptIsDifferential(IAttribute* attribute, VARIANT_BOOL* isDifferential,
                                         VARIANT_BOOL* value) override;

  private:
    HRESULT Tell(const wchar_t* what, IAttribute* attribute, const std::function<void(IAttribute&)>& act,
                 VARIANT_BOOL* value);
    HRESULT Question(const wchar_t* what, IAttribute* attribute, VARIANT_BOOL* question, VARIANT_BOOL* value);
};

/// A generic object of a definition, with its points. A failed test when that fails.
com::Ref<IAppObject> NewObject(const wchar_t* definition);

com::Ref<IInput> InputOf(const com::Ref<IAppObject>& object, const wchar_t* index);
com::Ref<IOutput> OutputOf(const com::Ref<IAppObject>& object, const wchar_t* index);
com::Ref<IAttribute> AttributeOf(const com::Ref<IAppObject>& object, const wchar_t* index);

inline std::wstring ValueOf(const com::Ref<IAttribute>& attribute) {
    return TextOf(*attribute.Get(), &IAttribute::get_Value);
}
inline HRESULT SetValueOf(const com::Ref<IAttribute>& attribute, const wchar_t* value) {
    return attribute->put_Value(com::Bstr(value).Get());
}

template <class I>
bool Flag(I& object, HRESULT (STDMETHODCALLTYPE I::*member)(VARIANT_BOOL*)) {
    VARIANT_BOOL value = 2;
    EXPECT_EQ(S_OK, (object.*member)(&value));
    EXPECT_TRUE(value == VARIANT_TRUE || value == VARIANT_FALSE);
    return value != VARIANT_FALSE;
}

} // namespace hosttest
