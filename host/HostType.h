#pragma once

#include "com/Dom.h"
#include "com/Object.h"

#include <OrvDBFaces.h>
#include <OrvHost.h>

#include <string>
#include <string_view>
#include <utility>

namespace orv {

/// What a type says of itself; what neither the catalogue nor the host's table
/// knows is empty.
struct TypeDescription {
    std::wstring id;
    std::wstring name;
    std::wstring generalType;
    std::wstring units;
    std::wstring bacnetUnits;
    std::wstring invalidValue;
    std::wstring min;
    std::wstring max;
    std::wstring enumDesc;
    long factor = 0;
    long region = 0;
    long a = 0;
    long b = 0;
    long c = 0;
    long length = 0;
};

/// The description of an identifier, from the catalogue document where there is
/// one and it has the type, else from the host's own table.
TypeDescription DescribeType(std::wstring_view id, const tam::dom::Document& catalogue);

/// A type as the generic object gives it to its points, each point one of its
/// own: an enumeration description set on one point's type is that point's.
class HostType final : public com::DualObject<HostType, ISNVType, IEnumType> {
  public:
    explicit HostType(TypeDescription description) : type_(std::move(description)) {}
    static REFCLSID ClassId() noexcept { return __uuidof(::HostType); }

    // ISNVType
    HRESULT STDMETHODCALLTYPE get_ID(BSTR* value) override { return Answer(value, type_.id); }
    HRESULT STDMETHODCALLTYPE get_Z3Region(long* value) override { return Answer(value, type_.region); }
    HRESULT STDMETHODCALLTYPE get_Factor(long* value) override { return Answer(value, type_.factor); }
    HRESULT STDMETHODCALLTYPE get_ACoef(long* value) override { return Answer(value, type_.a); }
    HRESULT STDMETHODCALLTYPE get_BCoef(long* value) override { return Answer(value, type_.b); }
    HRESULT STDMETHODCALLTYPE get_CCoef(long* value) override { return Answer(value, type_.c); }
    HRESULT STDMETHODCALLTYPE get_GenType(BSTR* value) override { return Answer(value, type_.generalType); }
    HRESULT STDMETHODCALLTYPE get_LUIType(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_InvalidValue(BSTR* value) override {
        return Answer(value, type_.invalidValue);
    }
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* value) override { return Answer(value, type_.name); }
    HRESULT STDMETHODCALLTYPE get_Min(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_Max(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_Units(BSTR* value) override { return Answer(value, type_.units); }
    HRESULT STDMETHODCALLTYPE get_BACnetUnits(BSTR* value) override {
        return Answer(value, type_.bacnetUnits);
    }
    HRESULT STDMETHODCALLTYPE get_EnumDesc(BSTR* value) override { return Answer(value, type_.enumDesc); }
    HRESULT STDMETHODCALLTYPE get_Length(long* value) override { return Answer(value, type_.length); }
    HRESULT STDMETHODCALLTYPE get_HasField(VARIANT_BOOL* value) override;

    // IEnumType
    HRESULT STDMETHODCALLTYPE put_EnumDesc(BSTR value) override { return Store(type_.enumDesc, value); }
    HRESULT STDMETHODCALLTYPE get_IsEnumType(VARIANT_BOOL* value) override;

  private:
    TypeDescription type_;
};

} // namespace orv
