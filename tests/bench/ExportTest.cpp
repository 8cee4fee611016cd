// export: the real way through the compiler, and the way without one.

#include "tests/bench/BenchRun.h"

#include <gtest/gtest.h>

#include <string>

namespace benchtest {

namespace {

/// The sizes follow from the points: 16 bytes for the object; 8 an input, 10 an
/// output, 6 and its length a permanent attribute; of data, a status byte and
/// its length an input or output.
TEST(ExportTest, AnswersTheSizesOfThePoints) {
    const Json exported = Bench({L"export", L"channels"});
    constexpr int kAttributeBytes = 2 + 2 + 2 + 2 + 1 + 2 + 2 + 1 + 2 + 2 + 2;
    EXPECT_EQ(16 + 3 * 8 + 5 * 10 + 11 * 6 + kAttributeBytes, exported["sizes"]["cdb"]);
    EXPECT_EQ((3 + 5) * (2 + 1), exported["sizes"]["ddb"]);
    EXPECT_EQ(0, exported["sizes"]["sdb"]);
    EXPECT_EQ((Json{{"cdb", 0}, {"ddb", 0}, {"sdb", 0}}), exported["sizesBefore"]);
    EXPECT_EQ(Json::array(), exported["boxes"]);
}

TEST(ExportTest, AnswersAnImageOfTheModule) {
    const Json exported = Bench({L"export", L"full"});
    EXPECT_EQ("image", exported["kind"]);
    const Json head = exported["head"];
    EXPECT_EQ(3, head["object"]);
    EXPECT_EQ(1, head["address"]);
    EXPECT_EQ(true, head["lastOnDevice"]);
    EXPECT_EQ(13, head["inputs"]);
    EXPECT_EQ(25, head["outputs"]);
    EXPECT_EQ(65, head["attributes"]);
    EXPECT_EQ(exported["imageBytes"], head["length"]);
    EXPECT_EQ(true, head["checksumRight"]);
    EXPECT_EQ(426, exported["sizesBefore"]["cdb"]);
    EXPECT_EQ(160, exported["sizesBefore"]["ddb"]);
}

TEST(ExportTest, WritesTheStreamIntoAFile) {
    const std::wstring file = ScratchFolder() + L"channels.image";
    const Json exported = Bench({L"export", L"channels", L"-o", file});
    EXPECT_EQ(exported["streamText"], ReadFileBytes(file));
}

TEST(ExportTest, WithoutACompilerTheExportDocumentIsTheAnswer) {
    const Json exported = Bench({L"export", L"full", L"--no-compiler"});
    EXPECT_EQ("export document", exported["kind"]);
    EXPECT_EQ((Json{{"cdb", 0}, {"ddb", 0}, {"sdb", 0}}), exported["sizes"]);
    const std::string document = exported["streamText"];
    EXPECT_EQ(0U, document.find("<O_Tam_id DevAddr=\"1\" AppID=\"BENCH\" DevKey=\"K7\" TamObjectID=\"3\" "
                                "IsLastOnDev=\"1\">"));
    ASSERT_EQ(1U, exported["boxes"].size());
    const Json box = exported["boxes"][0];
    EXPECT_EQ("Gateway Object", box["caption"]);
    EXPECT_EQ("Compiler.dll, necessary to exported Tam object hasn't been found", box["text"]);
    EXPECT_EQ("Stream", box["during"]);
    EXPECT_EQ("", box["icon"]);
}

TEST(ExportTest, WiredInputsAreConnected) {
    const std::string open = Bench({L"export", L"channels", L"--no-compiler"})["streamText"];
    EXPECT_NE(std::string::npos, open.find("<DO1_In1 LinkReference=\"\" LogicalAddress=\"2\" SNVTType=\"95\" "
                                           "isPermanent=\"0\" IsConnected=\"0\""));
    const std::string wired = Bench({L"export", L"channels", L"--no-compiler", L"--wire"})["streamText"];
    EXPECT_NE(std::string::npos, wired.find("<DO1_In1 LinkReference=\"DI1_Out\" LogicalAddress=\"2\" "
                                            "SNVTType=\"95\" isPermanent=\"0\" IsConnected=\"1\""));
}

TEST(ExportTest, KeepsItsDocumentOnlyWhenItIsDebugged) {
    const std::wstring dump = L"C:\\interop_K9_7.xml";
    DeleteFileW(dump.c_str());
    EXPECT_EQ(1U, Bench({L"export", SmallStream()}).count("kind"));
    EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(dump.c_str()));

    const Json exported = Bench({L"export", SmallStream(), L"--debug-dump"});
    EXPECT_EQ(Json(Narrow(dump)), exported["dump"]);
    EXPECT_NE(std::string::npos, ReadFileBytes(dump).find("DevKey=\"K9\" TamObjectID=\"7\""));
    DeleteFileW(dump.c_str());
}

} // namespace

} // namespace benchtest
