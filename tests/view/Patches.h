#pragma once

#include "tests/view/Viewer.h"

#include <windows.h>

#include <array>

namespace viewtest {

/// What Wine, or the machine, does not offer is put into the viewer's program from outside:
/// code in the place of a function of the system. It lasts as long as the program.

/// From here on the system tells the viewer that its user has chosen high contrast.
void ChooseHighContrast(const Viewer& viewer);

/// The window comes to a monitor of so many dots to an inch, and stays as large as it is.
void ChooseScale(const Viewer& viewer, DWORD dpi);

/// Writes down what the viewer asks of the system for the look of its title.
class TitleRecord {
  public:
    explicit TitleRecord(const Viewer& viewer);
    /// The attribute and its value of the last call; zeros before the first.
    std::array<DWORD, 2> Last() const;

  private:
    RemoteMemory memory_;
};

} // namespace viewtest
