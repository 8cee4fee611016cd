#pragma once

#include <OrvDBFaces.h>

#include <memory>
#include <string_view>

namespace tam {

/// A value editor: a form that is made with the attribute and shown when the
/// user edits it.
class ValueEditor {
  public:
    virtual ~ValueEditor() = default;
    /// The data point to edit: an attribute, or an object that offers the
    /// attribute's members by name.
    virtual void SetDataPoint(IDispatch* dataPoint) = 0;
    /// Shows the form, modal to the host's active window; returns when it closes.
    virtual void ShowModal() = 0;
};

/// The form that fits a type's general type; none for any other text.
std::unique_ptr<ValueEditor> MakeValueEditor(std::wstring_view generalType);

} // namespace tam
