#include "check/Program.h"
#include "batch/Inputs.h"
#include "check/Files.h"
#include "check/Json.h"
#include "check/Schemas.h"
#include "tests/Places.h"

#include <gtest/gtest.h>

#ifdef __unix__
#include <sys/stat.h>
#endif

#include <filesystem>
#include <fstream>
#include <future>
#include <ios>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>

using namespace check;

namespace {

namespace fs = std::filesystem;

std::string Read(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class ProgramTest : public ::testing::Test {
  protected:
    void SetUp() override {
        options_.top = folder_; // whatever lies above
        options_.programFolder = folder_ / "nowhere";
        options_.print = [this](const std::string& text) { printed_ += text; };
        options_.complain = [this](const std::string& text) { complained_ += text; };
    }
    fs::path Write(const std::string& name, std::string_view text) {
        const fs::path path = folder_ / batch::PathOf(name);
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }
    int Run(const fs::path& input) {
        options_.inputs = {input};
        return RunProgram(options_);
    }

    tests::OwnFolder own_;
    const fs::path& folder_ = own_.Path();
    ProgramOptions options_;
    std::string printed_;
    std::string complained_;
};

constexpr std::string_view kGood =
    "<Tam><Name>H</Name><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>3</TamObjID></Tam>";
constexpr std::string_view kBad =
    "<Tam>\n<Name>H</Name><DevKey>K</DevKey><IsLastOnDev>2</IsLastOnDev><TamObjID>3</TamObjID></Tam>";
/// A stream with a type that a catalogue of the type 1 alone does not know.
constexpr std::string_view kWithType =
    "<Tam><Name>H</Name><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>3</TamObjID>"
    "<OutReferences><A_B><SNVTTYPE>2</SNVTTYPE><LOGICALADDRESS>1</LOGICALADDRESS></A_B></OutReferences></"
    "Tam>";

} // namespace

TEST_F(ProgramTest, AnswersAStatusForWhatWasFound) {
    EXPECT_EQ(Run(Write("good.xml", kGood)), kClean);
    EXPECT_EQ(printed_, "1 file: nothing found\n");
    printed_.clear();
    const fs::path bad = Write("bad.xml", kBad);
    EXPECT_EQ(Run(bad), kFound);
    EXPECT_EQ(printed_, batch::NameOf(bad) +
                            ":2:46: error: <IsLastOnDev> is \"2\"; expected: 0 or 1 [flag-value]\n"
                            "1 file: 1 error, 0 warnings, 0 notes\n");
}

TEST_F(ProgramTest, SaysWhyAFileCannotBeRead) {
    EXPECT_EQ(Run(folder_ / "missing.xml"), kUnreadable);
    EXPECT_EQ(complained_.substr(0, complained_.find('\n')),
              "tamcheck: " + batch::NameOf(folder_ / "missing.xml") + ": there is no such file");
    EXPECT_EQ(printed_, "1 file: 1 not read\n");
    complained_.clear();
    EXPECT_EQ(Run(folder_), kUnreadable); // a folder without documents
    EXPECT_NE(complained_.find("holds no file"), std::string::npos);
    Write("catalogue.xml", "<x/>");
    options_.catalogue = folder_ / "catalogue.xml";
    EXPECT_EQ(Run(Write("good.xml", kGood)), kUnreadable);
    EXPECT_NE(complained_.find("it has no types"), std::string::npos);
}

TEST_F(ProgramTest, OneBrokenFileDoesNotStopTheRest) {
    Write("many/a.xml", "");
    Write("many/b.xml", std::string("<Tam><Name>\xC3"));
    std::string deep;
    for (int i = 0; i < 100000; ++i) {
        deep += "<a>";
    }
    Write("many/c.xml", deep);
    Write("many/d/e.xml", kBad);
    options_.jobs = 3;
    EXPECT_EQ(Run(folder_ / "many"), kFound);
    for (const std::string_view part :
         {"a.xml:1:1: error: the document is empty [file-empty]",
          "b.xml:1:12: error: the file ends in the middle of a character [encoding-invalid]",
          "c.xml:1:770: error: an element 257 levels deep", "e.xml:2:46: error: ", "4 files: "}) {
        EXPECT_NE(printed_.find(part), std::string::npos) << part << "\n" << printed_;
    }
}

TEST_F(ProgramTest, LooksAProjectsPointsUpInTheDefinitionOfTheChannel) {
    Write("run/channel.xml", "<AppObject><NAME>n</NAME><ID>o_tam_ai_id</ID><Attributes><Offset><SNVTTYPE>147"
                             "</SNVTTYPE><VALUE>0</VALUE></Offset></Attributes><TAMConfig/></AppObject>");
    Write("run/a_project.xml", "<Project><O_Tam_AI_id><DevKey>K</DevKey><TamObjectKey>AI1</TamObjectKey>"
                               "<Attributes><Ofset Value=\"1\"/></Attributes></O_Tam_AI_id></Project>");
    EXPECT_EQ(Run(folder_ / "run"), kFound);
    EXPECT_NE(printed_.find("a_project.xml:1:86: error: the channel has no point <Ofset> in its definition; "
                            "did you mean Offset? [project-point]\n2 files: 1 error, 0 warnings, 0 notes\n"),
              std::string::npos)
        << printed_;
}

TEST_F(ProgramTest, TakesTheNearestCatalogue) {
    const fs::path path = Write("a/b/stream.xml", kWithType);
    EXPECT_EQ(Run(path), kClean);
    EXPECT_NE(complained_.find("no catalogue.xml is near"), std::string::npos);
    Write("a/catalogue.xml", "<x><SNVT_1><Type>Struct</Type><Length>1</Length></SNVT_1></x>");
    EXPECT_EQ(Run(path), kFound);
    EXPECT_NE(printed_.find("[type-unknown]"), std::string::npos);
}

TEST_F(ProgramTest, LooksForTheCatalogueUpToTheRoot) {
    options_.top.clear();
    Write("catalogue.xml", "<x><SNVT_1><Type>Struct</Type><Length>1</Length></SNVT_1></x>");
    EXPECT_EQ(Run(Write("1/2/3/4/5/6/7/8/9/10/11/12/stream.xml", kWithType)), kFound);
    EXPECT_NE(printed_.find("[type-unknown]"), std::string::npos) << printed_ << complained_;
}

TEST_F(ProgramTest, EndsTheSearchForTheCatalogueWhereItIsTold) {
    Write("a/catalogue.xml", "<x><SNVT_1><Type>Struct</Type><Length>1</Length></SNVT_1></x>");
    const fs::path path = Write("a/b/c/stream.xml", kWithType);
    options_.top = folder_ / "a" / "b";
    EXPECT_EQ(Run(path), kClean);
    EXPECT_NE(complained_.find("no catalogue.xml is near"), std::string::npos);
    options_.top = folder_ / "a";
    EXPECT_EQ(Run(path), kFound);
}

TEST_F(ProgramTest, ComplainsOfACatalogueThatIsFoundAndHasNoTypes) {
    const fs::path catalogue = Write("catalogue.xml", "<broken");
    const fs::path stream = Write("stream.xml", kWithType);
    EXPECT_EQ(Run(stream), kUnreadable);
    EXPECT_EQ(complained_, "tamcheck: the catalogue " + batch::NameOf(catalogue) + ": it has no types\n");
    complained_.clear();
    options_.format = Format::Json;
    printed_.clear();
    EXPECT_EQ(Run(stream), kUnreadable);
    EXPECT_NE(printed_.find("\"status\": 2"), std::string::npos) << printed_;
    options_.format = Format::Text;
    complained_.clear();
    EXPECT_EQ(Run(catalogue), kFound) << "a catalogue looks nothing up in itself";
    EXPECT_EQ(complained_, "");
}

TEST_F(ProgramTest, ChecksTheFilesWithoutTheCatalogueThatWasNamed) {
    const fs::path bad = Write("bad.xml", kBad);
    options_.catalogue = folder_ / "nowhere.xml";
    options_.format = Format::Json;
    EXPECT_EQ(Run(bad), kUnreadable);
    EXPECT_NE(printed_.find("\"rule\": \"flag-value\""), std::string::npos) << printed_;
    EXPECT_NE(printed_.find("\"status\": 2"), std::string::npos) << printed_;
    EXPECT_EQ(complained_.find("tamcheck: the catalogue " + batch::NameOf(options_.catalogue) + ": "), 0U)
        << complained_;
    printed_.clear();
    options_.format = Format::Sarif;
    EXPECT_EQ(Run(bad), kUnreadable);
    EXPECT_NE(printed_.find("flag-value"), std::string::npos) << printed_;
}

TEST_F(ProgramTest, ChecksFilesWhoseNamesDifferInLetterCase) {
    const fs::path good = Write("two/A.xml", kGood);
    const fs::path bad = Write("two/a.xml", kBad);
    if (!fs::equivalent(good, bad)) {
        EXPECT_EQ(Run(folder_ / "two"), kFound);
        EXPECT_NE(printed_.find("a.xml:2:46: error: "), std::string::npos) << printed_;
        EXPECT_NE(printed_.find("2 files: 1 error"), std::string::npos) << printed_;
    }
}

TEST_F(ProgramTest, ReadsAStreamToItsEndWithinItsLimit) {
    std::string problem;
    const std::string text(200000, 'x');
    std::istringstream whole(text);
    EXPECT_EQ(ReadStream(whole, 0, text.size(), problem), text);
    EXPECT_EQ(problem, "");
    std::istringstream longer(text + "x");
    EXPECT_EQ(ReadStream(longer, 0, text.size(), problem), "");
    EXPECT_EQ(problem, "it is larger than 512 MB");
}

#ifdef __unix__
TEST_F(ProgramTest, ReadsAPipe) {
    const fs::path pipe = folder_ / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const auto writer =
        std::async(std::launch::async, [&] { std::ofstream(pipe, std::ios::binary) << kBad; });
    EXPECT_EQ(Run(pipe), kFound);
    EXPECT_NE(printed_.find("pipe:2:46: error: "), std::string::npos) << printed_;
}

TEST_F(ProgramTest, ShowsNamesWithoutWhatATerminalObeys) {
    EXPECT_EQ(Run(Write("a\x1b[31m\nb\xC2\x9B\x33\x31m.xml", kBad)), kFound);
    EXPECT_NE(printed_.find("/a [31m b 31m.xml:2:46: error: "), std::string::npos) << printed_;
    EXPECT_EQ(Run(folder_ / "c\x1b[2J.xml"), kUnreadable);
    EXPECT_EQ(complained_.find('\x1b'), std::string::npos) << complained_;
    EXPECT_NE(complained_.find("/c [2J.xml: there is no such file"), std::string::npos) << complained_;
}
#endif

TEST_F(ProgramTest, ShowsTextsWithoutWhatATerminalObeys) {
    EXPECT_EQ(Run(Write("a.xml", "<Tam><Name>H</Name><DevKey>K</DevKey><IsLastOnDev>\xC2\x9B\x33\x31m"
                                 "</IsLastOnDev><TamObjID>3</TamObjID></Tam>")),
              kFound);
    EXPECT_NE(printed_.find("<IsLastOnDev> is \" 31m\""), std::string::npos) << printed_;
    EXPECT_EQ(printed_.find("\xC2\x9B"), std::string::npos) << printed_;
}

TEST_F(ProgramTest, SaysWhatIsWrongWithTheOptions) {
    EXPECT_EQ(UsageFault(options_), "no file was named");
    options_.inputs = {folder_ / "a.xml"};
    EXPECT_EQ(UsageFault(options_), "");
    options_.format = Format::Markdown;
    EXPECT_EQ(UsageFault(options_), "--format markdown goes with --rules; text, json or sarif");
    options_.listsRules = true;
    EXPECT_EQ(UsageFault(options_), "--rules checks no files: leave them out");
    options_.inputs.clear();
    EXPECT_EQ(UsageFault(options_), "");
    options_.format = Format::Sarif;
    EXPECT_EQ(UsageFault(options_), "--rules takes text, json or markdown");
    options_.schemas = folder_;
    EXPECT_EQ(UsageFault(options_), "--rules lists and --schemas writes: give one of them");
    options_.listsRules = false;
    for (const Format format : {Format::Json, Format::Sarif, Format::Markdown}) {
        options_.format = format;
        EXPECT_EQ(UsageFault(options_), "--schemas takes no format");
    }
    options_.format = Format::Text;
    EXPECT_EQ(UsageFault(options_), "");
    options_.inputs = {folder_ / "a.xml"};
    EXPECT_EQ(UsageFault(options_), "--schemas checks no files: leave them out");
}

TEST_F(ProgramTest, LooksFromADefinitionToTheStreamsOfTheRun) {
    Write("catalogue.xml", "<x><SNVT_1><Name>SNVT_e</Name><Type>Enum</Type><Length>1</Length></SNVT_1></x>");
    Write(
        "stream.xml",
        "<Tam><Name>H</Name><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>3</TamObjID><Attributes>"
        "<A_B><SNVTTYPE>1</SNVTTYPE><LOGICALADDRESS>1</LOGICALADDRESS><VALUE>1</VALUE></A_B></Attributes></"
        "Tam>");
    Write("definition.xml", "<AppObject><NAME>n</NAME><ID>i</ID><Tam><Attributes><A_B><DefaultValue>1</"
                            "DefaultValue></A_B></Attributes></Tam></AppObject>");
    EXPECT_EQ(Run(folder_), kFound);
    EXPECT_NE(printed_.find("definition.xml:1:54: error: "), std::string::npos) << printed_;
    EXPECT_NE(printed_.find("[default-not-taken]"), std::string::npos);
}

TEST_F(ProgramTest, WritesOneJsonDocumentAndOneOfSarif) {
    const fs::path bad = Write("b\xC3\xA4"
                               "d one.xml",
                               kBad);
    options_.format = Format::Json;
    EXPECT_EQ(Run(bad), kFound);
    for (const std::string_view part :
         {"\"line\": 2,", "\"column\": 46,", "\"rule\": \"flag-value\"", "\"kind\": \"device stream\"",
          "\"message\": \"<IsLastOnDev> is \\\"2\\\"\"", "\"errors\": 1,"}) {
        EXPECT_NE(printed_.find(part), std::string::npos) << part << "\n" << printed_;
    }
    printed_.clear();
    options_.format = Format::Sarif;
    EXPECT_EQ(Run(bad), kFound);
    for (const std::string_view part :
         {"\"version\": \"2.1.0\"", "b%C3%A4d%20one.xml\"", "\"startLine\": 2,", "\"startColumn\": 46,",
          "\"columnKind\": \"unicodeCodePoints\"", "\"ruleId\": \"flag-value\""}) {
        EXPECT_NE(printed_.find(part), std::string::npos) << part << "\n" << printed_;
    }
}

TEST_F(ProgramTest, WritesTheCommandAndTheExitStatusIntoItsJson) {
    options_.format = Format::Json;
    EXPECT_EQ(Run(folder_ / "nowhere.xml"), kUnreadable);
    EXPECT_TRUE(printed_.starts_with("{\n  \"command\": \"check\",\n")) << printed_;
    EXPECT_TRUE(printed_.ends_with("  \"status\": 2\n}\n")) << printed_;
    printed_.clear();
    options_.listsRules = true;
    EXPECT_EQ(RunProgram(options_), kClean);
    EXPECT_TRUE(printed_.starts_with("{\n  \"command\": \"check rules\",\n")) << printed_;
    EXPECT_TRUE(printed_.ends_with("  \"status\": 0\n}\n"));
}

TEST_F(ProgramTest, WritesWholeCharactersIntoItsJson) {
    JsonWriter json;
    json.BeginObject();
    json.Text("file", "a\xED\xA0\x80z\xFF\xC3\xA4\x7F\n");
    json.EndObject();
    EXPECT_EQ(json.Take(), "{\n  \"file\": \"a\xEF\xBF\xBDz\xEF\xBF\xBD\xC3\xA4\\u007f\\u000a\"\n}\n");
}

TEST_F(ProgramTest, ReadsHowManyFilesAtATime) {
    unsigned jobs = 7;
    EXPECT_TRUE(ReadJobs("12", jobs));
    EXPECT_EQ(jobs, 12u);
    EXPECT_TRUE(ReadJobs("0", jobs));
    EXPECT_GE(jobs, 1u);
    for (const std::string_view word : {"", "-1", "1000", "4x", "four"}) {
        EXPECT_FALSE(ReadJobs(word, jobs)) << word;
    }
}

TEST_F(ProgramTest, WritesTheFindingsOfEachFileBelowAFolder) {
    Write("many/good.xml", kGood);
    Write("many/deep/bad.xml", kBad);
    const fs::path bad = folder_ / "many" / "deep" / "bad.xml";
    options_.outFolder = folder_ / "out";
    EXPECT_EQ(Run(folder_ / "many"), kFound);
    EXPECT_EQ(Read(folder_ / "out" / "good.txt"), "1 file: nothing found\n");
    EXPECT_TRUE(
        Read(folder_ / "out" / "deep" / "bad.txt").starts_with(batch::NameOf(bad) + ":2:46: error: "));
    EXPECT_NE(printed_.find("2 files: 1 error"), std::string::npos) << printed_;
    options_.format = Format::Json;
    EXPECT_EQ(Run(folder_ / "many"), kFound);
    EXPECT_NE(Read(folder_ / "out" / "deep" / "bad.json").find("\"status\": 1"), std::string::npos);
    EXPECT_NE(Read(folder_ / "out" / "good.json").find("\"status\": 0"), std::string::npos);
    options_.inputs = {bad, folder_ / "nowhere.xml"};
    EXPECT_EQ(RunProgram(options_), kUnreadable);
    EXPECT_FALSE(fs::exists(folder_ / "out" / "nowhere.json"));
}

TEST_F(ProgramTest, RefusesTwoFindingsOfOneName) {
    options_.inputs = {Write("one/a.xml", kGood), Write("two/a.xml", kGood)};
    options_.outFolder = folder_ / "out";
    EXPECT_EQ(RunProgram(options_), kUnreadable);
    EXPECT_NE(complained_.find("would both be written to"), std::string::npos) << complained_;
    EXPECT_FALSE(fs::exists(folder_ / "out"));
    EXPECT_EQ(printed_, "");
}

TEST_F(ProgramTest, SaysWhereFindingsCannotBeWritten) {
    options_.outFolder = Write("file", "") / "below";
    EXPECT_EQ(Run(Write("a.xml", kGood)), kUnreadable);
    EXPECT_NE(complained_.find("a.txt cannot be written"), std::string::npos) << complained_;
}

TEST_F(ProgramTest, WritesTheSchemas) {
    options_.schemas = folder_ / "schemas";
    EXPECT_EQ(RunProgram(options_), kClean);
    EXPECT_EQ(AllSchemas().size(), 8u);
    for (const Schema& schema : AllSchemas()) {
        EXPECT_EQ(Read(folder_ / "schemas" / schema.file), Read(tests::TopFolder() / "schemas" / schema.file))
            << schema.file;
    }
}

TEST_F(ProgramTest, TheDocumentOfTheRulesIsOfToday) {
    EXPECT_EQ(Read(tests::TopFolder() / "docs" / "rules.md"), RulesMarkdown())
        << "write it again: tamcheck --rules --format markdown > docs/rules.md";
    options_.listsRules = true;
    EXPECT_EQ(RunProgram(options_), kClean);
    for (const Rule& rule : AllRules()) {
        EXPECT_NE(printed_.find(rule.name), std::string::npos) << rule.name;
    }
}

TEST_F(ProgramTest, TheGoodSamplesHaveNotesAtMost) {
    for (const std::string_view name :
         {"O_Tam_id.xml", "catalogue.xml", "streams/full.xml", "streams/channels.xml", "channels"}) {
        printed_.clear();
        EXPECT_EQ(Run(tests::TopFolder() / "samples" / name), kClean) << printed_;
    }
    EXPECT_EQ(Run(tests::TopFolder() / "samples" / "device.xml"),
              kFound); // it has two versions with a fault on purpose
}
