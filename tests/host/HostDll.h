#pragma once

#include "com/Conversion.h"
#include "com/Ref.h"

#include <OrvDBFaces.h>
#include <OrvHost.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace hosttest {

/// OrvHost.dll beside the test program, without any registration.
class HostDll {
  public:
    static HostDll& Get();
    HostDll(const HostDll&) = delete;
    HostDll& operator=(const HostDll&) = delete;

    HRESULT ClassObject(REFCLSID clsid, REFIID iid, void** out) const;
    HRESULT CanUnloadNow() const;
    FARPROC Export(const char* name) const;
    const std::wstring& Path() const { return path_; }

  private:
    HostDll();

    std::wstring path_;
    HMODULE module_ = nullptr;
};

/// A new object of a class; a failed test and an empty reference when there is none.
template <class I>
com::Ref<I> Create(REFCLSID clsid) {
    com::Ref<IClassFactory> factory;
    com::Ref<I> object;
    const HRESULT found = HostDll::Get().ClassObject(clsid, IID_IClassFactory, factory.PutVoid());
    EXPECT_EQ(S_OK, found);
    if (factory) {
        EXPECT_EQ(S_OK, factory->CreateInstance(nullptr, __uuidof(I), object.PutVoid()));
    }
    return object;
}

/// The description of the error object of the last failed call; takes it away.
std::wstring LastError();

/// A text of a property or a method without arguments.
template <class I>
std::wstring TextOf(I& object, HRESULT (STDMETHODCALLTYPE I::*member)(BSTR*)) {
    com::Bstr text;
    EXPECT_EQ(S_OK, (object.*member)(text.Put()));
    return std::wstring(text.View());
}

template <class I>
long LongOf(I& object, HRESULT (STDMETHODCALLTYPE I::*member)(long*)) {
    long value = -1;
    EXPECT_EQ(S_OK, (object.*member)(&value));
    return value;
}

/// The decimal mark of the user that the tests run under.
std::wstring DecimalMark();

/// A number text with "." as the machine's user writes it.
std::wstring Local(std::wstring_view number);

/// The numbers of COM errors as they are written.
inline HRESULT Code(unsigned long code) {
    return static_cast<HRESULT>(code);
}

} // namespace hosttest
