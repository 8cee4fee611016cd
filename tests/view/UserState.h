#pragma once

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

namespace viewtest {

/// While this lives the window finds nothing that it keeps of its user, and what it keeps is
/// the test's: its key of the registry is empty, and its folder is another one. After it the
/// user has the key again as it was. What a test that was ended has left is given back by the
/// next one.
class UserState {
  public:
    /// `folder` is the test's, with the closing backslash.
    explicit UserState(const std::wstring& folder);
    ~UserState();
    UserState(const UserState&) = delete;
    UserState& operator=(const UserState&) = delete;

  private:
    std::wstring folder_;
};

/// A number of the user's registry that is another one while this lives. What a test that was
/// ended has left is given back by the next UserState.
class UserNumber {
  public:
    UserNumber(const wchar_t* key, const wchar_t* name);
    ~UserNumber();
    UserNumber(const UserNumber&) = delete;
    UserNumber& operator=(const UserNumber&) = delete;

    void Set(DWORD number) const;

  private:
    std::wstring key_;
    std::wstring name_;
};

/// Colours of the system that are others while this lives, for programs that start meanwhile
/// too. What a test that was ended has left is given back by the next UserState.
class UserColours {
  public:
    /// Colours by their numbers, as COLOR_WINDOW.
    explicit UserColours(const std::vector<std::pair<int, COLORREF>>& colours);
    ~UserColours();
    UserColours(const UserColours&) = delete;
    UserColours& operator=(const UserColours&) = delete;
};

} // namespace viewtest
