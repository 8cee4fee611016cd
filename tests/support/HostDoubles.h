#pragma once

#include "com/Conversion.h"
#include "com/Object.h"
#include "com/Ref.h"
#include "tests/support/ByNameDouble.h"

#include <windows.h>

#include <OrvDBFaces.h>

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace support {

/// A class object for one class, in this process, and its ProgID in the
/// registry; both are gone with this object. The ProgID goes to the machine's
/// part where that may be written: Wine 8 looks classes up there alone.
class HostClass {
  public:
    using Create = std::function<HRESULT(REFIID iid, void** out)>;
    /// An empty ProgID writes nothing to the registry. Without `create` the ProgID
    /// leads to a class that has no server.
    HostClass(REFCLSID clsid, std::wstring progId, Create create);
    ~HostClass();
    HostClass(const HostClass&) = delete;
    HostClass& operator=(const HostClass&) = delete;

  private:
    std::wstring progId_;
    HKEY root_ = nullptr;
    DWORD cookie_ = 0;
};

/// A unit converter that answers as it is told and keeps what it was asked.
class Converter final : public com::DualObject<Converter, IUnitConverter> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }

    std::wstring converted = L"converted";
    std::wstring label = L"label";
    HRESULT convertResult = S_OK;
    HRESULT labelResult = S_OK;
    /// Value and unit of each Convert, in order.
    std::vector<std::pair<std::wstring, std::wstring>> asked;
    /// Unit of each Label, in order.
    std::vector<std::wstring> labelAsked;

    STDMETHODIMP Convert(BSTR value, BSTR unit, BSTR* result) override;
    STDMETHODIMP Label(BSTR unit, BSTR* result) override;
};

/// The compiler service, called by name; keeps what it was given.
class Compiler final : public ByNameDouble {
  public:
    std::wstring dbPath;
    std::wstring givenXml;
    std::wstring stream = L"compiled";
    std::wstring cdbSize = L"0";
    std::wstring ddbSize = L"0";
    HRESULT setPathResult = S_OK;
    HRESULT compileResult = S_OK;
    /// The members called, in order.
    std::vector<std::wstring> calls;

    Compiler() : ByNameDouble({L"SetDBPath", L"CompileTamObject"}) {}

  private:
    HRESULT Call(std::size_t member, WORD flags, DISPPARAMS& params, VARIANT* result,
                 EXCEPINFO* exception) override;
};

/// The host's class that knows where the controller's database lies.
class DatabaseLocation final : public com::DualObject<DatabaseLocation, IDatabaseLocation> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    std::wstring path = L"C:\\db";
    HRESULT result = S_OK;

    STDMETHODIMP Reserved01() override { return E_NOTIMPL; }
    STDMETHODIMP Reserved02() override { return E_NOTIMPL; }
    STDMETHODIMP get_Path(BSTR* value) override;
};

/// A host object that only counts who holds it.
class Held final : public com::DualObject<Held, IHostDocument> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    STDMETHODIMP get_View(IDispatch**) override { return E_NOTIMPL; }
    /// References beside the test's own.
    ULONG Others() {
        AddRef();
        return Release() - 1;
    }
};

/// An object of a channel, as the host hands one to `Contains`.
com::Ref<ITamInternalAppObject> ChannelItem(const std::wstring& deviceKey, const std::wstring& objectKey);

/// The host's device as the object manager asks it, with this firmware and a
/// library that lists these names.
com::Ref<IDeviceContext> HostContext(const std::wstring& firmware = L"V1",
                                     const std::wstring& names = L"<O_Tam_ID/>");

inline constexpr CLSID kConverterClass = {
    0x7A0E3B51, 0x3A0C, 0x4C3B, {0x9B, 0x0E, 0x5D, 0x1F, 0x52, 0x8C, 0x11, 0xA1}};
inline constexpr CLSID kCompilerClass = {
    0x7A0E3B52, 0x3A0C, 0x4C3B, {0x9B, 0x0E, 0x5D, 0x1F, 0x52, 0x8C, 0x11, 0xA1}};
inline constexpr CLSID kDatabaseLocationClass = {
    0x1D816F43, 0xBC81, 0x46F7, {0xB1, 0x7D, 0xEE, 0x81, 0xB5, 0x59, 0xE7, 0x8F}};
inline constexpr const wchar_t* kConverterProgId = L"UnitManager.Converter";
inline constexpr const wchar_t* kCompilerProgId = L"ORV.QB.Interop.Compilers.CompilersInterop";

} // namespace support
