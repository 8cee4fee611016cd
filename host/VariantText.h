#pragma once

#include "com/Conversion.h"

#include <windows.h>

#include <oaidl.h>

#include <string_view>

namespace orv {

/// An argument that a caller passes by reference to have its text replaced:
/// a VARIANT, a reference to one, or a reference to a text. Anything else is
/// "type mismatch".
class VariantText {
  public:
    explicit VariantText(VARIANT* argument);

    /// "Type mismatch" when it holds something other than text now.
    std::wstring_view Read() const;
    void Write(com::Bstr text) noexcept;

  private:
    /// One of the two is set.
    VARIANT* variant_ = nullptr;
    BSTR* text_ = nullptr;
};

} // namespace orv
