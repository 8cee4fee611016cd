#pragma once

#include "view/model/RecentFiles.h"

#include <windows.h>

#include <string>
#include <vector>

namespace view {

/// What the program remembers for a user, in the registry below
/// HKCU\Software\O_Tam_id\View. What cannot be read is as at the first start.
class Settings {
  public:
    Settings();

    /// The window's place on the screen; of no size at the first start.
    WINDOWPLACEMENT placement{};
    /// Widths, in thousandths of the window, of the sheet, the panes and the findings.
    std::vector<int> splits = {420, 260, 480};
    bool showsFindings = true;
    bool showsSource = true;
    bool usUnits = false;

    const RecentFiles& Recent() const noexcept { return recent_; }
    // At once, and among what other windows have written meanwhile.
    void AddRecent(const std::wstring& file);
    void RemoveRecent(const std::wstring& file);

    /// Of a list: the width of each column in pixels at 96 dots to the inch, in the order
    /// of the subitems; empty at the first start.
    std::vector<int> WidthsOf(const wchar_t* list) const;
    void SetWidths(const wchar_t* list, const std::vector<int>& widths) const;

    /// Writes the members above; the recent files are there already.
    void Save() const;

  private:
    void ReadRecent();
    void WriteRecent() const;

    RecentFiles recent_;
};

} // namespace view
