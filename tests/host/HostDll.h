#pragma once

#include "com/Conversion.h"
#include "com/Ref.h"

#include <OrvDBFaces.h>
#include <OrvHost.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace hosttest {

// What the host services refuse with, as their library names it.
inline constexpr auto kNoDatabasePath = static_cast<HRESULT>(0x80040401);
inline constexpr auto kNotAnExportDocument = static_cast<HRESULT>(0x80040402);
inline constexpr auto kDatabaseFolder = static_cast<HRESULT>(0x80040403);
inline constexpr auto kLibraryFolder = static_cast<HRESULT>(0x80040501);
inline constexpr auto kNoDefinition = static_cast<HRESULT>(0x80040502);
inline constexpr auto kNotADefinition = static_cast<HRESULT>(0x80040503);
inline constexpr auto kNotInitialised = static_cast<HRESULT>(0x80040504);
inline constexpr auto kDeviceDocument = static_cast<HRESULT>(0x80040505);

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
