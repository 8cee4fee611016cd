#include "tests/bench/BenchRun.h"

#include "tests/bench/Schema.h"
#include "tests/Places.h"
#include "tests/Program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <string_view>

namespace benchtest {

namespace {

constexpr DWORD kLongestRun = 300'000;
/// A program asks a console for its size only by a handle that may read.
constexpr std::wstring_view kConsole = L"CONOUT$";

HANDLE OpenInherited(const std::wstring& path, DWORD access, DWORD disposition) {
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    return CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, disposition,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

HANDLE PipeThatNobodyReads() {
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE read = nullptr;
    HANDLE write = nullptr;
    EXPECT_TRUE(CreatePipe(&read, &write, &inherited, 0));
    CloseHandle(read);
    return write;
}

/// What a program prints to: a file of its own unless another is given.
HANDLE OpenOutput(const std::wstring& output, const std::wstring& own) {
    if (output == kNobodyReads) {
        return PipeThatNobodyReads();
    }
    return output.empty()
               ? OpenInherited(own, GENERIC_WRITE, CREATE_ALWAYS)
               : OpenInherited(output, output == kConsole ? GENERIC_READ | GENERIC_WRITE : GENERIC_WRITE,
                               OPEN_EXISTING);
}

using Runs = std::map<std::vector<std::wstring>, Outcome>;

/// What Bench has run, by its arguments.
Runs& RememberedRuns() {
    static Runs runs;
    return runs;
}

/// When all tests run again, the files that their commands write are gone.
class ForgetsRuns final : public testing::EmptyTestEventListener {
  public:
    void OnTestIterationStart(const testing::UnitTest&, int) override { RememberedRuns().clear(); }
};

[[maybe_unused]] const bool kForgets = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new ForgetsRuns); // which owns it
    return true;
}();

/// An argument as the program's start-up code reads it back.
std::wstring Quoted(const std::wstring& argument) {
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : argument) {
        if (c == L'"') {
            quoted.append(backslashes + 1, L'\\');
        }
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    quoted.append(backslashes, L'\\');
    return quoted + L"\"";
}

} // namespace

std::wstring FullDevice() {
    return L"Z:\\dev\\full";
}

Outcome RunProgram(const std::wstring& program, const std::vector<std::wstring>& arguments,
                   const std::wstring& output, const std::wstring& input) {
    const std::wstring outFile = ScratchFolder() + L"out.txt";
    const std::wstring errFile = ScratchFolder() + L"err.txt";
    std::wstring line = Quoted(program);
    for (const std::wstring& argument : arguments) {
        line += L" " + Quoted(argument);
    }
    tests::Program::Start start;
    start.info.dwFlags = STARTF_USESTDHANDLES;
    start.info.hStdInput = OpenInherited(input, GENERIC_READ, OPEN_EXISTING);
    start.info.hStdOutput = OpenOutput(output, outFile);
    start.info.hStdError = OpenInherited(errFile, GENERIC_WRITE, CREATE_ALWAYS);
    start.inherits = true;
    Outcome run;
    run.status = tests::Program(line, start).Wait(kLongestRun);
    for (const HANDLE handle : {start.info.hStdInput, start.info.hStdOutput, start.info.hStdError}) {
        CloseHandle(handle);
    }
    run.out = output.empty() ? ReadFileBytes(outFile) : std::string();
    run.err = ReadFileBytes(errFile);
    return run;
}

Outcome RunBench(const std::vector<std::wstring>& arguments, const std::wstring& input) {
    return RunProgram(ProgramFolder() + L"tambench.exe", arguments, L"", input);
}

Json Bench(const std::vector<std::wstring>& arguments, DWORD expectedStatus) {
    Runs& runs = RememberedRuns();
    auto found = runs.find(arguments);
    if (found == runs.end()) {
        std::vector<std::wstring> all = arguments;
        all.emplace_back(L"--json");
        found = runs.emplace(arguments, RunBench(all)).first;
    }
    const Outcome& run = found->second;
    EXPECT_EQ(expectedStatus, run.status) << run.err;
    Json document = Json::parse(run.out, nullptr, false);
    EXPECT_FALSE(document.is_discarded()) << "not one JSON document:\n" << run.out;
    if (run.status != expectedStatus || document.is_discarded()) {
        return nullptr;
    }
    EXPECT_EQ(std::vector<std::string>(), SchemaFaults(document));
    EXPECT_EQ(expectedStatus, document["status"]);
    if (document.contains("boxes")) {
        EXPECT_EQ(Json::array(), document["liveObjectsIn"]);
    }
    return document;
}

void ForgetRunsOf(const std::wstring& file) {
    std::erase_if(RememberedRuns(), [&](const auto& run) {
        return std::ranges::any_of(run.first, [&](const std::wstring& argument) {
            return argument.find(file) != std::wstring::npos;
        });
    });
}

std::wstring ProgramFolder() {
    return (tests::BinFolder() / L"").native();
}

std::wstring SamplesFolder() {
    return (tests::TopFolder() / L"samples" / L"").make_preferred().native();
}

std::wstring ScratchFolder() {
    static const tests::OwnFolder own;
    return (own.Path() / L"").native();
}

std::wstring SmallStream() {
    constexpr std::string_view text =
        "<Tam><Name>Small</Name><DevKey>K9</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>7</TamObjID>"
        "<OutReferences><_AI6_Out><SNVTTYPE>105</SNVTTYPE></_AI6_Out></OutReferences>"
        "<Attributes><AI6_Label><SNVTTYPE>216</SNVTTYPE><VALUE>1.5</VALUE></AI6_Label></Attributes></Tam>";
    const std::wstring path = ScratchFolder() + L"small.xml";
    const HANDLE file = OpenInherited(path, GENERIC_WRITE, CREATE_ALWAYS);
    DWORD written = 0;
    WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    CloseHandle(file);
    EXPECT_EQ(text.size(), written) << Narrow(path);
    return path;
}

std::string ReadFileBytes(const std::wstring& path) {
    const HANDLE file = OpenInherited(path, GENERIC_READ, OPEN_EXISTING);
    if (file == INVALID_HANDLE_VALUE) {
        ADD_FAILURE() << "there is no file " << Narrow(path);
        return {};
    }
    std::string bytes(GetFileSize(file, nullptr), '\0');
    DWORD read = 0;
    ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
    CloseHandle(file);
    bytes.resize(read);
    return bytes;
}

std::string Local(std::string number) {
    if (IsCommaUser()) {
        std::replace(number.begin(), number.end(), '.', ',');
    }
    return number;
}

bool IsCommaUser() {
    wchar_t mark[8] = {};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, mark, 8);
    return mark[0] == L',';
}

std::string Narrow(const std::wstring& text) {
    std::string narrow(text.size() * 3, '\0');
    narrow.resize(static_cast<std::size_t>(
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), narrow.data(),
                            static_cast<int>(narrow.size()), nullptr, nullptr)));
    return narrow;
}

Json Pluck(const Json& array, const char* member) {
    Json values = Json::array();
    for (const Json& entry : array) {
        values.push_back(entry.at(member));
    }
    return values;
}

Json Named(const Json& array, const std::string& name) {
    for (const Json& entry : array) {
        if (entry.at("name") == name) {
            return entry;
        }
    }
    return nullptr;
}

} // namespace benchtest
