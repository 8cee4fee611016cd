#include "dialogs/ValueForm.h"

#include "common/ComponentState.h"
#include "common/ErrorReport.h"
#include "core/RunTimeError.h"

namespace tam {

void ValueForm::SetDataPoint(IDispatch* dataPoint) {
    if (IsShown()) {
        throw RunTimeError(RunTime::InvalidCall);
    }
    struct ReleaseUnlessRead {
        ValueForm& form;
        bool read = false;
        ~ReleaseUnlessRead() {
            if (!read) {
                form.Release();
            }
        }
    } guard{*this};
    point_.emplace(dataPoint);
    ReadDataPoint();
    guard.read = true;
}

void ValueForm::ShowModal() {
    if (IsShown()) {
        throw RunTimeError(RunTime::InvalidCall);
    }
    com::CheckSet(point_ ? point_->Object() : nullptr);
    // Outlives the form's own reference: the last one ends the attribute, and
    // with it this form.
    const std::optional<DataPoint> keep = point_;
    struct ReleaseAtEnd {
        ValueForm& form;
        ~ReleaseAtEnd() { form.Release(); }
    } guard{*this};
    if (ShowOrThrow(resource_)) {
        OnFinished();
    }
}

std::wstring ValueForm::Label(std::wstring (DataPointType::*member)() const) const noexcept {
    std::wstring text;
    com::Attempt([&] { text = (Point().Type().*member)(); });
    return text;
}

std::wstring ValueForm::Subject() const {
    return Point().Name();
}

void ValueForm::ShowFailure(const wchar_t* text) noexcept {
    com::Attempt([&] { ShowBox(text, ComponentTitle(), MB_ICONEXCLAMATION); });
}

void ValueForm::Release() noexcept {
    OnReleased();
    point_.reset();
    calledFramModif4_ = false;
}

} // namespace tam
