#pragma once

#include "core/GeneralType.h"

#include <OrvDBFaces.h>

#include <memory>

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

/// The form that fits a general type; none for any other.
std::unique_ptr<ValueEditor> MakeValueEditor(GeneralType type);

} // namespace tam
