#pragma once

#include "com/Conversion.h"
#include "com/Ref.h"

#include <OrvDBFaces.h>

#include <cstdint>
#include <string>

namespace tam {

/// The type of a data point, read again at each call: through ISNVType when the
/// object offers it, else its members by name. A member that a late-bound
/// object lacks is empty. What a member throws goes through.
class DataPointType {
  public:
    /// Throws "object not set" without an object.
    explicit DataPointType(com::Ref<IDispatch> object);

    std::wstring Name() const { return Text(&ISNVType::get_Name, L"Name"); }
    std::wstring GenType() const { return Text(&ISNVType::get_GenType, L"GenType"); }
    std::wstring Min() const { return Text(&ISNVType::get_Min, L"Min"); }
    std::wstring Max() const { return Text(&ISNVType::get_Max, L"Max"); }
    std::wstring Units() const { return Text(&ISNVType::get_Units, L"Units"); }
    std::wstring InvalidValue() const { return Text(&ISNVType::get_InvalidValue, L"InvalidValue"); }
    std::wstring EnumDesc() const { return Text(&ISNVType::get_EnumDesc, L"EnumDesc"); }
    std::int32_t Length() const;

  private:
    using TextMember = HRESULT (STDMETHODCALLTYPE ISNVType::*)(BSTR*);
    std::wstring Text(TextMember member, const wchar_t* name) const;

    com::Ref<IDispatch> object_;
    com::Ref<ISNVType> type_;
};

/// What an editor edits: through IAttribute when the object offers it, else
/// its members by name, so that any host object will do.
class DataPoint {
  public:
    /// Throws "object not set" without an object.
    explicit DataPoint(IDispatch* object);

    IDispatch* Object() const noexcept { return object_.Get(); }
    std::wstring Name() const;
    std::wstring Value() const;
    /// The value as the data point itself shows it; empty when it has no such member.
    std::wstring DispValue() const;
    void SetValue(const std::wstring& value) const;
    /// Throws "object not set" when the data point has no type.
    DataPointType Type() const;
    /// The collection of a structure's fields; empty when there is none.
    com::Ref<IDispatch> Fields() const;

  private:
    com::Ref<IDispatch> object_;
    com::Ref<IAttribute> attribute_;
};

/// A result as text, numbers as the user writes them; empty for none.
std::wstring TextOfResult(const com::Variant& result);
/// A result as an object; empty when it is none.
com::Ref<IDispatch> ObjectOfResult(const com::Variant& result) noexcept;

} // namespace tam
