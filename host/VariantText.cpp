#include "host/VariantText.h"

#include "core/RunTimeError.h"

namespace orv {

namespace {

/// How many references follow one another. One more, and a variable may well
/// refer to itself.
constexpr int kMostReferences = 4;

[[noreturn]] void ThrowMismatch() {
    throw tam::RunTimeError(tam::RunTime::TypeMismatch);
}

} // namespace

VariantText::VariantText(VARIANT* argument) {
    // A script passes a reference to its variable, which may be one itself.
    int references = 0;
    while (argument != nullptr && argument->vt == (VT_BYREF | VT_VARIANT) && references < kMostReferences) {
        argument = argument->pvarVal;
        ++references;
    }
    if (argument == nullptr) {
        ThrowMismatch();
    }
    if ((argument->vt & VT_BYREF) == 0) {
        variant_ = argument;
    } else if (argument->vt == (VT_BYREF | VT_BSTR) && argument->pbstrVal != nullptr) {
        text_ = argument->pbstrVal;
    } else {
        ThrowMismatch();
    }
}

std::wstring_view VariantText::Read() const {
    if (text_ == nullptr && variant_->vt != VT_BSTR) {
        ThrowMismatch();
    }
    return com::View(text_ == nullptr ? variant_->bstrVal : *text_);
}

void VariantText::Write(com::Bstr text) noexcept {
    if (text_ != nullptr) {
        SysFreeString(*text_);
        *text_ = text.Detach();
        return;
    }
    VariantClear(variant_);
    variant_->vt = VT_BSTR;
    variant_->bstrVal = text.Detach();
}

} // namespace orv
