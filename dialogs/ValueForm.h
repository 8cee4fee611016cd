#pragma once

#include "com/Boundary.h"
#include "dialogs/DataPoint.h"
#include "dialogs/ModalDialog.h"
#include "dialogs/ValueEditor.h"

#include <optional>
#include <string>
#include <utility>

namespace tam {

/// What the value editors share: the data point, which is held only from its
/// assignment until the form has closed, and the OK step.
class ValueForm : public ValueEditor, protected ModalDialog {
  public:
    void SetCalledFramModif4(bool called) noexcept final { calledFramModif4_ = called; }
    /// "Invalid call" while the form is shown.
    void SetDataPoint(IDispatch* dataPoint) final;
    void ShowModal() final;

  protected:
    explicit ValueForm(int resource) noexcept : resource_(resource) {}

    const DataPoint& Point() const noexcept { return *point_; }
    bool IsCalledFramModif4() const noexcept { return calledFramModif4_; }

    /// Reads what the form needs of a new data point.
    virtual void ReadDataPoint() = 0;
    /// The form has closed; the data point is released next.
    virtual void OnFinished() {}
    /// The data point's name.
    std::wstring Subject() const override;
    /// The data point is gone; so must be what the form holds of it.
    virtual void OnReleased() noexcept {}

    /// Runs the OK step. What it throws is shown as `failureText`, and the form
    /// stays open.
    template <class F>
    void RunOkStep(const wchar_t* failureText, F&& step) const noexcept {
        if (com::Attempt(std::forward<F>(step))) {
            ShowFailure(failureText);
        }
    }
    /// A member of the type for a label: empty when it cannot be read.
    std::wstring Label(std::wstring (DataPointType::*member)() const) const noexcept;

  private:
    static void ShowFailure(const wchar_t* text) noexcept;
    void Release() noexcept;

    int resource_;
    bool calledFramModif4_ = false;
    std::optional<DataPoint> point_;
};

} // namespace tam
