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
    /// Set by the structure editor before it assigns a field as data point.
    virtual void SetCalledFramModif4(bool called) noexcept = 0;
    /// The data point to edit: an attribute, or an object that offers the
    /// attribute's members by name. Reads it; what it throws goes through.
    virtual void SetDataPoint(IDispatch* dataPoint) = 0;
    /// Shows the form, modal to the host's active window; returns when it has
    /// closed. The data point is released by then.
    virtual void ShowModal() = 0;
};

/// The form that fits a type's general type; none for any other text.
std::unique_ptr<ValueEditor> MakeValueEditor(std::wstring_view generalType);

} // namespace tam
