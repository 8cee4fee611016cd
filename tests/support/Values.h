#pragma once

#include "com/Conversion.h"
#include "com/Counted.h"
#include "com/Ref.h"

#include <windows.h>

#include <oaidl.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace support {

/// A host's enumerator over any values, one a call, which ends with a result of
/// its own.
class Values final : public com::Counted<IEnumVARIANT> {
  public:
    static com::Ref<IUnknown> Make(std::vector<com::Variant> values, HRESULT end = S_FALSE) {
        return com::Ref<IUnknown>::Own(new Values(std::move(values), end));
    }
    STDMETHODIMP Next(ULONG, VARIANT* items, ULONG* fetched) override {
        const bool ends = next_ == values_.size();
        if (!ends) {
            *items = values_[next_++].Detach();
        }
        if (fetched != nullptr) {
            *fetched = ends ? 0 : 1;
        }
        return ends ? end_ : S_OK;
    }
    STDMETHODIMP Skip(ULONG) override { return E_NOTIMPL; }
    STDMETHODIMP Reset() override { return E_NOTIMPL; }
    STDMETHODIMP Clone(IEnumVARIANT**) override { return E_NOTIMPL; }

  private:
    Values(std::vector<com::Variant> values, HRESULT end) : values_(std::move(values)), end_(end) {}

    std::vector<com::Variant> values_;
    std::size_t next_ = 0;
    HRESULT end_;
};

/// A value that is an object, of the type that a caller sees: VT_UNKNOWN or VT_DISPATCH.
inline com::Variant ObjectValue(IUnknown* object, VARTYPE type = VT_UNKNOWN) {
    com::Variant value;
    VARIANT& raw = *value.Put();
    raw.vt = type;
    raw.punkVal = com::Ref<IUnknown>(object).Detach();
    return value;
}

} // namespace support
