#pragma once

#include <string>

namespace bench {

/// Stands for the standard input where a file is read.
inline constexpr const wchar_t* kStandardInput = L"-";

/// All bytes of a file, or of the standard input. Throws BenchError.
std::string ReadBytes(const std::wstring& path);

/// The text of a document in whichever encoding its byte order mark or its XML declaration
/// says, as a host hands it over: the declaration names no other encoding than UTF-8.
/// Throws a BenchError with file, line and column where bytes are no characters.
std::wstring TextOfDocument(std::string bytes, const std::wstring& path);
/// The same of a file.
std::wstring ReadTextFile(const std::wstring& path);

/// The first thing that keeps a document from being XML, as "line 3, column 7: reason";
/// empty when there is none.
std::string WhyNoXml(std::string bytes);

} // namespace bench
