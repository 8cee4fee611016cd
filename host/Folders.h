#pragma once

#include <string>

namespace orv {

/// The folder of the controller databases, full and without a closing
/// backslash: the environment variable ORV_DBPATH where it is set, else
/// OrvHost\Database below the user's temporary folder. Made when it is not
/// there. Throws errDatabaseFolder.
std::wstring DatabaseFolder();

/// The full form of a path; empty where the system makes none of it.
std::wstring FullPath(const std::wstring& path);
bool IsFolder(const std::wstring& path) noexcept;

} // namespace orv
