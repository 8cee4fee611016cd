#pragma once

#include "com/Conversion.h"
#include "com/Object.h"
#include "com/Ref.h"

#include <windows.h>

#include <OrvDBFaces.h>

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
    /// An empty ProgID writes nothing to the registry.
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
class Compiler final : public IDispatch {
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

    virtual ~Compiler() = default;
    STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override;
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                        UINT*) override;

  private:
    ULONG references_ = 1;
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

/// An object of a channel, as the host hands one to `Contains`.
class ChannelItem final : public com::DualObject<ChannelItem, ITamInternalAppObject> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    ChannelItem(std::wstring deviceKey, std::wstring objectKey)
        : deviceKey_(std::move(deviceKey)), objectKey_(std::move(objectKey)) {}

    STDMETHODIMP get_TamDeviceKey(BSTR* value) override { return Answer(value, deviceKey_); }
    STDMETHODIMP get_TamInternalObjectKey(BSTR* value) override { return Answer(value, objectKey_); }
    STDMETHODIMP get_TamObjectContainer(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_TempTamDeviceKey(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_TempTamDeviceKey(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_TempTamInternalObjectKey(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_TempTamInternalObjectKey(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_TamDevice(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Status(long*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Status(long) override { return E_NOTIMPL; }

  private:
    std::wstring deviceKey_;
    std::wstring objectKey_;
};

inline constexpr CLSID kConverterClass = {
    0x7A0E3B51, 0x3A0C, 0x4C3B, {0x9B, 0x0E, 0x5D, 0x1F, 0x52, 0x8C, 0x11, 0xA1}};
inline constexpr CLSID kCompilerClass = {
    0x7A0E3B52, 0x3A0C, 0x4C3B, {0x9B, 0x0E, 0x5D, 0x1F, 0x52, 0x8C, 0x11, 0xA1}};
inline constexpr CLSID kDatabaseLocationClass = {
    0x1D816F43, 0xBC81, 0x46F7, {0xB1, 0x7D, 0xEE, 0x81, 0xB5, 0x59, 0xE7, 0x8F}};
inline constexpr const wchar_t* kConverterProgId = L"UnitManager.Converter";
inline constexpr const wchar_t* kCompilerProgId = L"ORV.QB.Interop.Compilers.CompilersInterop";

} // namespace support
