#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace viewtest {

/// While this lives the window finds nothing that it keeps of its user, and what it keeps is
/// the test's: its key of the registry is empty, and its folder is another one. Behind it the
/// user has the key again as it was.
class UserState {
  public:
    /// `folder` is the test's, with the closing backslash.
    explicit UserState(const std::wstring& folder);
    ~UserState();
    UserState(const UserState&) = delete;
    UserState& operator=(const UserState&) = delete;

  private:
    struct Value {
        std::wstring name;
        DWORD kind;
        std::vector<BYTE> bytes;
    };

    std::vector<Value> values_;
    std::wstring folder_;
};

} // namespace viewtest
