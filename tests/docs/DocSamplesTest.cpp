// The samples of README and of the guide, run as they are printed, in a copy of the folders
// that the documents name. scripts/doc_samples.py takes them out of the Markdown.

#include "tests/bench/BenchRun.h"
#include "tests/bench/Registered.h"
#include "tests/Places.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace benchtest {

namespace {

namespace fs = std::filesystem;

std::wstring Wide(const std::string& text) {
    return std::wstring(text.begin(), text.end());
}

/// In this folder for as long as it lives.
class InFolder {
  public:
    explicit InFolder(const std::wstring& folder) {
        GetCurrentDirectoryW(MAX_PATH, before_);
        EXPECT_TRUE(SetCurrentDirectoryW(folder.c_str())) << Narrow(folder);
    }
    ~InFolder() { SetCurrentDirectoryW(before_); }
    InFolder(const InFolder&) = delete;
    InFolder& operator=(const InFolder&) = delete;

  private:
    wchar_t before_[MAX_PATH] = {};
};

/// A command as a shell cuts it: at blanks that stand in no quotes.
std::vector<std::wstring> Words(const std::wstring& command) {
    std::vector<std::wstring> words(1);
    bool isQuoted = false;
    for (const wchar_t c : command) {
        if (c == L'"') {
            isQuoted = !isQuoted;
        } else if (c == L' ' && !isQuoted) {
            words.emplace_back();
        } else {
            words.back() += c;
        }
    }
    return words;
}

struct Command {
    std::string place;
    std::wstring folder;
    std::wstring line;
};

/// What the build took out of the documents, with a closing backslash.
std::wstring TakenOut() {
    return (tests::ProgramFolder() / L"samples" / L"").native();
}

/// The tree as the documents have it, in a folder of its own, for the commands write into it.
class Tree {
  public:
    Tree() {
        constexpr auto kAll = fs::copy_options::recursive;
        fs::create_directories(Folder(L"build/win32"));
        fs::copy(tests::TopFolder() / L"samples", Folder(L"samples"), kAll);
        fs::copy(tests::BinFolder(), Folder(L"build/win32/bin"), kAll);
        fs::copy(tests::BinFolder(), Folder(L"win32"), kAll); // as in the zip
    }
    fs::path Folder(const std::wstring& name) const {
        return (own_.Path() / name).lexically_normal().make_preferred();
    }

  private:
    tests::OwnFolder own_;
};

std::vector<Command> Commands() {
    std::ifstream file(std::filesystem::path(TakenOut() + L"commands.txt"));
    std::vector<Command> commands;
    for (std::string line; std::getline(file, line);) {
        const std::size_t first = line.find('\t');
        const std::size_t second = line.find('\t', first + 1);
        commands.push_back({line.substr(0, first), Wide(line.substr(first + 1, second - first - 1)),
                            Wide(line.substr(second + 1))});
    }
    return commands;
}

TEST(DocSamplesTest, EachCommandDoesWhatTheDocumentSays) {
    const std::vector<Command> commands = Commands();
    EXPECT_GE(commands.size(), 25U);
    const Tree tree;
    for (const Command& command : commands) {
        SCOPED_TRACE(command.place + ": " + Narrow(command.line));
        const fs::path folder = tree.Folder(command.folder);
        const InFolder there(folder.native());
        std::vector<std::wstring> words = Words(command.line);
        const fs::path named = words.front();
        const std::wstring program =
            named.has_parent_path() ? (folder / named).make_preferred().native() : named.native();
        words.erase(words.begin());
        if (program == L"regsvr32") {
            // Windows, and Wine from version 9 on, show a box that a person closes.
            words.insert(words.begin(), L"/s");
        }
        const Outcome run = RunProgram(program, words);
        EXPECT_EQ(0U, run.status) << run.out << run.err;
    }
    // The document's script says at its end whether all was right.
    for (const wchar_t* const file : {L"result.txt", L"win32/result.txt"}) {
        const std::string result = ReadFileBytes(tree.Folder(file).native());
        std::string plain;
        for (std::size_t at = 2; at < result.size(); at += 2) {
            plain += result[at];
        }
        EXPECT_NE(std::string::npos, plain.find("All right.")) << Narrow(file) << ": " << plain;
    }
    for (const wchar_t* const file : {L"project.xml", L"win32/project.xml", L"build/win32/bin/project.xml"}) {
        EXPECT_TRUE(fs::exists(tree.Folder(file))) << "the example saves a project: " << Narrow(file);
    }
    for (const wchar_t* const file :
         {L"full.html", L"full.svg", L"device.html", L"build/schemas/device-stream.xsd"}) {
        EXPECT_TRUE(fs::exists(tree.Folder(file))) << Narrow(file);
    }
}

TEST(DocSamplesTest, TheExampleOfAHostListsSavesAndExports) {
    const InFolder there(ProgramFolder());
    const std::wstring project = ScratchFolder() + L"example.xml";
    const Outcome run = RunProgram(ProgramFolder() + L"host.exe",
                                   {L"samples\\catalogue.xml", L"samples\\streams\\channels.xml", project});
    EXPECT_EQ(0U, run.status) << run.err;
    EXPECT_EQ("", run.err);
    EXPECT_NE(std::string::npos, run.out.find("Reading room has 11 attributes")) << run.out;
    EXPECT_NE(std::string::npos, run.out.find("  AI1_Offset = -0.50")) << run.out;
    const std::size_t image = run.out.find("Image: ");
    ASSERT_NE(std::string::npos, image) << run.out;
    EXPECT_EQ(std::string::npos, run.out.find("Image: 0 characters")) << run.out;
    EXPECT_NE(std::string::npos, ReadFileBytes(project).find("<DevKey>K7</DevKey>"));
}

TEST(DocSamplesTest, TheExampleOfAHostSaysWhatItMisses) {
    const InFolder there(ProgramFolder());
    const Outcome run = RunProgram(ProgramFolder() + L"host.exe", {L"no.xml", L"no.xml", L"no.xml"});
    EXPECT_EQ(1U, run.status);
    EXPECT_NE(std::string::npos, run.err.find("host: reading the catalogue failed: 0x80004005")) << run.err;
}

TEST(DocSamplesTest, TheSampleInCppReadsTheDefinition) {
    const InFolder there(ProgramFolder());
    const Outcome run = RunProgram(ProgramFolder() + L"doc_sample.exe", {});
    EXPECT_EQ(0U, run.status) << run.err;
    EXPECT_EQ(0U, run.out.find("Remote I/O")) << run.out;
}

TEST(DocSamplesTest, TheSampleInVBScriptListsTheAttributes) {
    const Registered dlls;
    const InFolder there(ProgramFolder());
    const Outcome run = RunProgram(L"cscript.exe", {L"//nologo", TakenOut() + L"README_1.vbs"});
    EXPECT_EQ(0U, run.status) << run.err;
    EXPECT_NE(std::string::npos, run.out.find("AI1_Offset = 1.5 ")) << run.out << run.err;
    EXPECT_NE(std::string::npos, run.out.find("CTX1_Mask = ")) << run.out;
}

} // namespace

} // namespace benchtest
