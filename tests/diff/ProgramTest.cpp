// diff as a program: what it reads, prints and answers.

#include "diff/Program.h"
#include "tests/diff/Changes.h"
#include "tests/Places.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <ios>
#include <string>

namespace difftest {

namespace {

namespace fs = std::filesystem;

class ProgramTest : public testing::Test {
  protected:
    void SetUp() override {
        Write("catalogue.xml",
              "<SNVTCatalogue><SNVT_147><Name>SNVT_temp_diff_p</Name><Type>SignedNumeric</Type><Unit>"
              "degrees C</Unit><Min>-327.68</Min><Max>327.66</Max><Length>2</Length><A_Coef>1</A_Coef>"
              "<B_Coef>-2</B_Coef><C_Coef>0</C_Coef></SNVT_147></SNVTCatalogue>");
        Write("a.xml", Attributes(Attribute("A", "147", "1", "1")));
        Write("b.xml", Attributes(Attribute("A", "147", "1", "2")));
    }
    void Write(const char* name, const std::string& text) const {
        std::ofstream(folder_ / name, std::ios::binary) << text;
    }

    int Run(const char* before, const char* after, bool isJson = false, const char* catalogue = "") {
        diff::ProgramOptions options;
        options.before = folder_ / before;
        options.after = folder_ / after;
        options.isJson = isJson;
        if (*catalogue != '\0') {
            options.catalogue = folder_ / catalogue;
        }
        options.print = [this](const std::string& text) { out_ += text; };
        options.complain = [this](const std::string& text) { err_ += text; };
        return diff::RunProgram(options);
    }

    tests::OwnFolder own_;
    const fs::path& folder_ = own_.Path();
    std::string out_;
    std::string err_;
};

TEST_F(ProgramTest, AnswersZeroForDocumentsOfOneMeaning) {
    EXPECT_EQ(diff::kSame, Run("a.xml", "a.xml"));
    EXPECT_EQ("No change in meaning.\n", out_);
    EXPECT_EQ("", err_);
}

TEST_F(ProgramTest, AnswersOneForAChange) {
    EXPECT_EQ(diff::kDifferent, Run("a.xml", "b.xml"));
    EXPECT_EQ("Attributes\n  ~ A, value: \"1 degrees C\" -> \"2 degrees C\"  [line 1, now 1]\n\n1 change: 1 "
              "changed.\n",
              out_);
}

TEST_F(ProgramTest, AnswersTwoForTrouble) {
    EXPECT_EQ(diff::kTrouble, Run("a.xml", "none.xml"));
    EXPECT_NE(std::string::npos, err_.find("none.xml: "));
    err_.clear();
    Write("broken.xml", "<Tam>\n<Name>A</Nam></Tam>");
    EXPECT_EQ(diff::kTrouble, Run("broken.xml", "a.xml"));
    EXPECT_NE(std::string::npos, err_.find("broken.xml:2:")) << err_;
    EXPECT_EQ("", out_);
}

TEST_F(ProgramTest, RefusesDocumentsOfTwoKinds) {
    EXPECT_EQ(diff::kTrouble, Run("a.xml", "catalogue.xml"));
    EXPECT_NE(std::string::npos, err_.find("a.xml is of the kind device stream, ")) << err_;
    EXPECT_NE(std::string::npos, err_.find("catalogue.xml of the kind catalogue; compare two of one kind\n"))
        << err_;
}

TEST_F(ProgramTest, RefusesACatalogueThatIsNone) {
    EXPECT_EQ(diff::kTrouble, Run("a.xml", "b.xml", false, "a.xml"));
    EXPECT_NE(std::string::npos, err_.find("a.xml: it has no types")) << err_;
    EXPECT_EQ(diff::kTrouble, Run("a.xml", "b.xml", false, "none.xml"));
}

TEST_F(ProgramTest, RefusesACatalogueThatIsFoundAndHasNoTypes) {
    Write("catalogue.xml", "<broken");
    EXPECT_EQ(diff::kTrouble, Run("a.xml", "b.xml"));
    EXPECT_NE(std::string::npos, err_.find("catalogue.xml: it has no types")) << err_;
    EXPECT_EQ("", out_);
}

TEST_F(ProgramTest, WritesJson) {
    Write("c.xml", Attributes(Attribute("A", "147", "1", "\"\\")));
    EXPECT_EQ(diff::kDifferent, Run("a.xml", "c.xml", true));
    EXPECT_NE(std::string::npos, out_.find("\"kind\": \"device stream\"")) << out_;
    EXPECT_NE(std::string::npos, out_.find("\"same\": false")) << out_;
    EXPECT_NE(std::string::npos, out_.find("    {\n"
                                           "      \"change\": \"changed\",\n"
                                           "      \"kind\": \"attribute\",\n"
                                           "      \"name\": \"A\",\n"
                                           "      \"field\": \"value\",\n"
                                           "      \"before\": \"1 degrees C\",\n"
                                           "      \"after\": \"\\\"\\\\ degrees C\",\n"
                                           "      \"lineBefore\": 1,\n"
                                           "      \"lineAfter\": 1\n"
                                           "    }\n"))
        << out_;
    EXPECT_TRUE(out_.ends_with("  \"problems\": [],\n  \"status\": 1\n}\n")) << out_;
    out_.clear();
    EXPECT_EQ(diff::kSame, Run("a.xml", "a.xml", true));
    EXPECT_TRUE(
        out_.ends_with("  \"same\": true,\n  \"changes\": [],\n  \"problems\": [],\n  \"status\": 0\n}\n"))
        << out_;
}

TEST_F(ProgramTest, ComparesADeviceByItsStreamToo) {
    const auto write = [this](const char* folder, const char* stream, const std::string& value) {
        fs::create_directories(folder_ / folder);
        std::ofstream(folder_ / folder / "device.xml", std::ios::binary)
            << "<Device><Stream>" << stream << "</Stream><Firmware>V2_10</Firmware></Device>";
        std::ofstream(folder_ / folder / "hall.xml", std::ios::binary)
            << Attributes(Attribute("A", "147", "1", value));
    };
    write("old", "hall.xml", "1");
    write("new", "hall.xml", "2");
    EXPECT_EQ(diff::kSame, Run("old/device.xml", "old/device.xml"));
    out_.clear();
    EXPECT_EQ(diff::kDifferent, Run("old/device.xml", "new/device.xml"));
    EXPECT_EQ("Attributes\n  ~ A, value: \"1 degrees C\" -> \"2 degrees C\"  [line 1, now 1]\n\n1 change: 1 "
              "changed.\n",
              out_);
    write("new", "none.xml", "2");
    EXPECT_EQ(diff::kTrouble, Run("old/device.xml", "new/device.xml"));
    EXPECT_NE(std::string::npos, err_.find("none.xml: ")) << err_;
    write("new", "device.xml", "2");
    EXPECT_EQ(diff::kTrouble, Run("old/device.xml", "new/device.xml"));
    EXPECT_NE(std::string::npos, err_.find("names as its stream, is of the kind device library\n")) << err_;
}

TEST_F(ProgramTest, TellsThePointsOfADeviceThatGotAStream) {
    Write("library.xml", "<Device><FWVersion><V1/></FWVersion></Device>");
    Write("device.xml", "<Device><FWVersion><V1/></FWVersion><Stream>a.xml</Stream></Device>");
    EXPECT_EQ(diff::kDifferent, Run("library.xml", "device.xml"));
    EXPECT_NE(std::string::npos, out_.find("Attributes\n  + A  (")) << out_;
    out_.clear();
    EXPECT_EQ(diff::kDifferent, Run("device.xml", "library.xml"));
    EXPECT_NE(std::string::npos, out_.find("Attributes\n  - A  (")) << out_;
}

TEST_F(ProgramTest, TellsTroubleAsJsonToo) {
    EXPECT_EQ(diff::kTrouble, Run("a.xml", "catalogue.xml", true));
    EXPECT_NE(std::string::npos, out_.find("  \"kind\": null,\n")) << out_;
    EXPECT_NE(std::string::npos, out_.find("  \"same\": null,\n  \"changes\": [],\n  \"problems\": [\n"))
        << out_;
    EXPECT_NE(std::string::npos, out_.find("a.xml is of the kind device stream, ")) << out_;
    EXPECT_TRUE(out_.ends_with("  ],\n  \"status\": 2\n}\n")) << out_;
    EXPECT_NE("", err_);
}

} // namespace

} // namespace difftest
