#pragma once

#include "com/Ref.h"
#include "core/DataSizeTable.h"

#include <windows.h>

#include <oaidl.h>

#include <string>

namespace tam {

/// What all objects of the component share. One copy for the loaded component.
struct ComponentState {
    /// Folder of the component's own file with a closing backslash.
    std::wstring AppPath;
    /// The catalogue document that the host handed over last.
    com::Ref<IDispatch> SnvtCatalogueDocument;
    /// Filled by each definition load; the last one wins. Nothing of the component reads it
    /// back: it is there for callers of its members.
    DataSizeTable DataSizes;
    /// The decimal mark of the user's locale, "," or "."; empty before
    /// InitDecimalSeparator has run.
    std::wstring DecimalSeparator;
    /// The window that marks the innermost yield that is under way; see YieldToHost.
    HWND YieldMark = nullptr;
};

ComponentState& State() noexcept;

/// Reads the user's decimal mark into the state. May run any number of times.
void InitDecimalSeparator();

/// A text of the component's string table; empty when there is none.
std::wstring ResourceText(unsigned id);
/// String resource 101, the component's title and the caption of its boxes.
std::wstring ComponentTitle();

} // namespace tam
