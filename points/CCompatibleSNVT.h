#pragma once

#include "com/Object.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <string>
#include <utility>

namespace tam {

/// One identifier of a list of compatible types, exactly as the list's text gave it.
class CCompatibleSNVT final : public com::DualObject<CCompatibleSNVT, ICompatibleSNVT> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CCompatibleSNVT); }
    static const IID& MembersId() noexcept { return __uuidof(::CCompatibleSNVTMembers); }

    explicit CCompatibleSNVT(std::wstring id) : id_(std::move(id)) {}
    const std::wstring& Id() const noexcept { return id_; }

    STDMETHODIMP get_ID(BSTR* value) override { return Answer(value, id_); }

  private:
    std::wstring id_;
};

} // namespace tam
