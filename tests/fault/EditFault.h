#pragma once

#include "tests/fault/ModuleFault.h"

namespace fault {

/// A job that opens a dialog, which is worked as by a user: changed, confirmed,
/// and cancelled when it stays open then.
class EditFaultTest : public ModuleFaultTest {
  protected:
    void SetUp() override;
    void TearDown() override;

    /// Of a structure's editor: the field whose own editor is opened.
    static constexpr int kOpenedField = 1;

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND runner_ = nullptr;
};

/// The message boxes of a run are those of an OK step that failed, or of an
/// editor that is not there.
void ExpectOkTexts(const Case& run);

} // namespace fault
