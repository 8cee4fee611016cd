#pragma once

#include "com/Counted.h"

#include <windows.h>

#include <oaidl.h>

#include <cwchar>
#include <string>
#include <utility>
#include <vector>

namespace support {

/// A host's object that is reached by its members' names alone, as one written
/// in a script. The class derived from it says what its calls do.
class ByNameDouble : public com::Counted<IDispatch> {
  public:
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        for (std::size_t i = 0; i < names_.size(); ++i) {
            if (_wcsicmp(names_[i].c_str(), names[0]) == 0) {
                ids[0] = static_cast<DISPID>(i + 1);
                return S_OK;
            }
        }
        ids[0] = DISPID_UNKNOWN;
        return DISP_E_UNKNOWNNAME;
    }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                        EXCEPINFO* exception, UINT*) override {
        const bool known = id >= 1 && static_cast<std::size_t>(id) <= names_.size();
        return known ? Call(static_cast<std::size_t>(id) - 1, flags, *params, result, exception)
                     : DISP_E_MEMBERNOTFOUND;
    }

  protected:
    explicit ByNameDouble(std::vector<std::wstring> names = {}) : names_(std::move(names)) {}
    /// Arguments stand last one first; `member` is the position of its name.
    virtual HRESULT Call(std::size_t member, WORD flags, DISPPARAMS& params, VARIANT* result,
                         EXCEPINFO* exception) = 0;

    std::vector<std::wstring> names_;
};

} // namespace support
