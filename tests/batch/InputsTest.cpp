#include "batch/Inputs.h"
#include "tests/Places.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace batch {

namespace {

namespace fs = std::filesystem;

class InputsTest : public testing::Test {
  protected:
    fs::path File(const std::string& name) const {
        const fs::path path = Folder() / PathOf(name);
        fs::create_directories(path.parent_path());
        std::ofstream(path) << "x";
        return path;
    }
    const fs::path& Folder() const { return folder_.Path(); }

  private:
    tests::OwnFolder folder_;
};

std::vector<std::string> Below(const std::vector<Input>& inputs) {
    std::vector<std::string> names;
    for (const Input& input : inputs) {
        names.push_back(input.below.generic_string());
    }
    return names;
}

std::string Refusal(const fs::path& folder, const std::vector<Input>& inputs, const char* ending) {
    try {
        OutputsIn(folder, inputs, ending);
        return "none";
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
}

TEST_F(InputsTest, AFolderStandsForTheXmlFilesBelowItInOrder) {
    File("b.xml");
    File("deep/er/c.XML");
    File("a.xml");
    File("notes.txt");
    File("xml");
    fs::create_directories(Folder() / "folder.xml");
    const auto inputs = FindInputs({Folder()});
    EXPECT_EQ((std::vector<std::string>{"a.xml", "b.xml", "deep/er/c.XML"}), Below(inputs));
    EXPECT_EQ(Folder() / "a.xml", inputs[0].file);
    for (const Input& input : inputs) {
        EXPECT_EQ("", input.problem);
    }
}

TEST_F(InputsTest, FilesStayInTheOrderInWhichTheyAreGiven) {
    const fs::path b = File("b.txt");
    const fs::path a = File("deep/a.xml");
    EXPECT_EQ((std::vector<std::string>{"b.txt", "a.xml", "nowhere.xml"}),
              Below(FindInputs({b, a, Folder() / "nowhere.xml"})));
}

TEST_F(InputsTest, AFileGivenTwiceIsThereOnce) {
    const fs::path a = File("a.xml");
    EXPECT_EQ((std::vector<std::string>{"a.xml"}),
              Below(FindInputs({a, Folder(), Folder() / "." / "a.xml"})));
}

TEST_F(InputsTest, NamesThatDifferInLetterCaseAreAsManyFilesAsTheFileSystemSays) {
    const fs::path small = File("a.xml");
    const fs::path capital = File("A.xml");
    const std::size_t files = fs::equivalent(small, capital) ? 1 : 2;
    EXPECT_EQ(files, FindInputs({small, capital}).size());
    EXPECT_EQ(files, FindInputs({Folder()}).size());
    const fs::path nowhere = Folder() / "nowhere.xml";
    EXPECT_EQ(1U, FindInputs({nowhere, nowhere}).size());
}

TEST_F(InputsTest, AFolderWithoutXmlFilesIsAProblem) {
    File("a.txt");
    const auto inputs = FindInputs({Folder()});
    ASSERT_EQ(1U, inputs.size());
    EXPECT_EQ(Folder(), inputs[0].file);
    EXPECT_EQ("the folder holds no file whose name ends in .xml", inputs[0].problem);
}

TEST_F(InputsTest, NamesAreUtf8) {
    File("h\u00F6rsaal.xml");
    const auto inputs = FindInputs({Folder()});
    ASSERT_EQ(1U, inputs.size());
    EXPECT_EQ("h\u00F6rsaal.xml", NameOf(inputs[0].below));
    EXPECT_EQ(inputs[0].below, PathOf("h\u00F6rsaal.xml"));
}

TEST_F(InputsTest, ManyAreSeveralOrAFolder) {
    const fs::path a = File("a.xml");
    EXPECT_FALSE(IsMany({a}));
    EXPECT_FALSE(IsMany({"nowhere"}));
    EXPECT_TRUE(IsMany({a, a}));
    EXPECT_TRUE(IsMany({Folder()}));
}

TEST_F(InputsTest, ResultsKeepTheirPlaceBelowTheFolder) {
    File("a.xml");
    File("deep/b.xml");
    const auto outputs = OutputsIn("out", FindInputs({Folder()}), ".html");
    EXPECT_EQ((std::vector<fs::path>{fs::path("out") / "a.html", fs::path("out") / "deep" / "b.html"}),
              outputs);
}

TEST_F(InputsTest, TwoInputsWithOneResultAreRefused) {
    const fs::path first = File("one/a.xml");
    const fs::path second = File("two/A.xml");
    EXPECT_EQ(NameOf(first) + " and " + NameOf(second) + " would both be written to " +
                  NameOf(fs::path("out") / "A.html") + "; name the folder above them instead",
              Refusal("out", FindInputs({first, second}), ".html"));
    EXPECT_EQ("none", Refusal("out", FindInputs({Folder()}), ".html"));
}

TEST_F(InputsTest, AFileIsNoFolderForResults) {
    const fs::path input = File("one/a.xml");
    const fs::path file = File("results.txt");
    EXPECT_EQ(NameOf(file) + " is no folder; the results cannot be written there",
              Refusal(file, FindInputs({input}), ".html"));
    EXPECT_EQ("none", Refusal(Folder() / "new", FindInputs({input}), ".html"));
}

TEST_F(InputsTest, AnInputIsNotWrittenOver) {
    const fs::path file = File("a.xml");
    EXPECT_EQ(NameOf(file) + " is read and would be written over; choose another folder",
              Refusal(Folder(), FindInputs({file}), ".xml"));
    EXPECT_EQ("none", Refusal(Folder(), FindInputs({file}), ".html"));
}

} // namespace

} // namespace batch
