#pragma once

#include <windows.h>

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace benchtest {

/// A text stands beside it as Json(text): a std::string itself is compared with it
/// by some versions of the library only.
using Json = nlohmann::json;

/// What a program left behind.
struct Outcome {
    DWORD status = ~0UL;
    std::string out;
    std::string err;
};

/// Runs a program to its end, with nothing to read on its input unless a file is given. One
/// that does not end within five minutes is stopped, which fails the test. Its output goes to
/// a file that is there already, when one is given.
Outcome RunProgram(const std::wstring& program, const std::vector<std::wstring>& arguments,
                   const std::wstring& output = L"", const std::wstring& input = L"NUL");

/// A device that takes no byte, as a full disk. Wine alone has one.
std::wstring FullDevice();
/// As an output: a pipe whose reader is gone.
inline constexpr const wchar_t* kNobodyReads = L"|";

/// The bench in the build's folder.
Outcome RunBench(const std::vector<std::wstring>& arguments, const std::wstring& input = L"NUL");

/// The bench with --json: its document, or null (and a failed test) when the
/// status is not the one expected or the output is no single document. The
/// same command line is run once only.
Json Bench(const std::vector<std::wstring>& arguments, DWORD expectedStatus = 0);
/// The command lines that name this file are run again: it has changed.
void ForgetRunsOf(const std::wstring& file);

/// Folder of the programs, of the samples, and one for the files of tests;
/// each with the closing backslash.
std::wstring ProgramFolder();
std::wstring SamplesFolder();
std::wstring ScratchFolder();

/// The file of a stream without faults: object 7 of device K9, with the output
/// _AI6_Out and the attribute AI6_Label, of whose type only the name is known.
std::wstring SmallStream();

/// The bytes of a file; a failed test when there is none.
std::string ReadFileBytes(const std::wstring& path);

/// A number text with "." as this machine's user writes it.
std::string Local(std::string number);
/// True for a user who writes 0,5.
bool IsCommaUser();

std::string Narrow(const std::wstring& text);

/// The members of one name of all objects in an array.
Json Pluck(const Json& array, const char* member);
/// The object in an array whose "name" is this one; null when there is none.
Json Named(const Json& array, const std::string& name);

} // namespace benchtest
