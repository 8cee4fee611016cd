// What explains a box or a failure: the place in the document.

#include "tests/bench/DeviceRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>

namespace benchtest {

namespace {

bool Has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

std::string Stream(const std::string& attributes) {
    return "<Tam>\n<Name>N</Name>\n<DevKey>K9</DevKey>\n<IsLastOnDev>1</IsLastOnDev>\n<TamObjID>7</"
           "TamObjID>\n"
           "<Attributes>\n" +
           attributes + "</Attributes>\n</Tam>\n";
}

TEST(FindingsTest, EachBoxOfAStreamHasItsPlace) {
    const Json oddities = Bench({L"inspect", L"oddities"}, 1);
    for (std::size_t i = 0; i < oddities["boxes"].size(); ++i) {
        bool isExplained = false;
        for (const Json& finding : oddities["checkFindings"]) {
            const Json& boxes = finding["boxes"];
            isExplained = isExplained || std::find(boxes.begin(), boxes.end(), i) != boxes.end();
        }
        EXPECT_TRUE(isExplained) << oddities["boxes"][i]["text"];
    }
}

TEST(FindingsTest, StandUnderTheBox) {
    const std::wstring file =
        WrittenFile(L"unknown_type.xml", Stream("<A>\n  <SNVTTYPE>9999</SNVTTYPE>\n</A>\n"));
    const Outcome run = RunBench({L"clear-refs", file});
    const std::size_t box = run.out.find("     Can't find the node related to SNVT ID 9999\n");
    ASSERT_NE(std::string::npos, box) << run.out;
    const std::string below = run.out.substr(run.out.find('\n', box) + 1);
    EXPECT_TRUE(Has(below, ":8:13: error: ")) << run.out;
    EXPECT_TRUE(Has(below, "[type-unknown]")) << run.out;
    EXPECT_TRUE(
        Has(RunBench({L"inspect", L"oddities"}).out, "<IsLastOnDev> is \"1.0\"; expected: 0 or 1; did you"))
        << "as check says it";
}

TEST(FindingsTest, StandUnderAFailure) {
    const std::wstring file = WrittenFile(L"unclosed.xml", Stream("<A>\n  <SNVTTYPE>105</SNVTTYPE>\n"));
    const Outcome run = RunBench({L"inspect", file});
    EXPECT_EQ(1U, run.status);
    EXPECT_EQ(0U, run.err.find("tambench: LoadFromXmlStream: 0x800A005B ")) << run.err;
    EXPECT_TRUE(Has(run.err, "\ntambench: " + Narrow(file) + ":")) << run.err;
    const Json findings = Bench({L"inspect", file}, 1)["checkFindings"];
    ASSERT_LE(1U, findings.size());
    EXPECT_EQ(Json(Narrow(file)), findings[0]["file"]);
    EXPECT_EQ("error", findings[0]["severity"]);
}

TEST(FindingsTest, TellTheFaultsOfTheDefinition) {
    const std::wstring folder = ScratchFolder() + L"faulty_definition\\";
    CreateDirectoryW(folder.c_str(), nullptr);
    for (const wchar_t* const file : {L"tambench.exe", L"O_Tam_id.dll", L"OrvHost.dll"}) {
        ASSERT_TRUE(CopyFileW((ProgramFolder() + file).c_str(), (folder + file).c_str(), FALSE));
    }
    WrittenFile(
        L"faulty_definition\\O_Tam_id.xml",
        "<AppObject>\n<NAME>M</NAME>\n<DataSizes>\n<T0 CDB_Size=\"256\"/>\n</DataSizes>\n</AppObject>\n");
    const Outcome run =
        RunProgram(folder + L"tambench.exe", {L"inspect", SamplesFolder() + L"streams\\channels.xml",
                                              L"--catalogue", SamplesFolder() + L"catalogue.xml", L"--json"});
    EXPECT_EQ(1U, run.status);
    const Json answer = Json::parse(run.out, nullptr, false);
    ASSERT_EQ(1U, answer["boxes"].size()) << run.out << run.err;
    EXPECT_EQ("Init", answer["boxes"][0]["during"]);
    ASSERT_EQ(1U, answer["checkFindings"].size()) << run.out;
    const Json& finding = answer["checkFindings"][0];
    EXPECT_EQ(Json(Narrow(folder) + "O_Tam_id.xml"), finding["file"]);
    EXPECT_EQ(4, finding["line"]);
    EXPECT_EQ(15, finding["column"]);
    EXPECT_EQ("size-range", finding["rule"]);
}

TEST(FindingsTest, StandUnderACatalogueThatCannotBeRead) {
    const std::wstring file =
        WrittenFile(L"unclosed_catalogue.xml",
                    "<SNVTCatalogue>\n<SNVT_1><Unit>A<Length>1</Length></SNVT_1>\n</SNVTCatalogue>\n");
    const Outcome run = RunBench({L"inspect", L"channels", L"--catalogue", file});
    EXPECT_EQ(1U, run.status);
    EXPECT_TRUE(Has(run.err, "\ntambench: " + Narrow(file) + ":2:10: error: ")) << run.err;
    EXPECT_TRUE(Has(run.err, "[xml-unclosed]")) << run.err;
}

TEST(FindingsTest, OfTheStreamStandBeforeThoseOfTheCatalogue) {
    std::string entries;
    for (int i = 1; i <= 4; ++i) {
        const std::string tag = "SNVT_" + std::to_string(i);
        entries += "<" + tag + "><Name>n" + std::to_string(i) +
                   "</Name><Type>Float</Type><Min>0</Min><Max>x</Max><Length>4</Length></" + tag + ">\n";
    }
    const std::wstring catalogue =
        WrittenFile(L"faulty_catalogue.xml", "<SNVTCatalogue>\n" + entries + "</SNVTCatalogue>\n");
    const std::wstring file = WrittenFile(L"unclosed_point.xml", Stream("<A>\n  <SNVTTYPE>105</SNVTTYPE>\n"));
    const Outcome run = RunBench({L"inspect", file, L"--catalogue", catalogue});
    EXPECT_EQ(0U, run.err.find("tambench: LoadFromXmlStream: 0x800A005B ")) << run.err;
    EXPECT_TRUE(Has(run.err, "\ntambench: " + Narrow(file) + ":")) << run.err;
}

TEST(FindingsTest, WhatPassedWithoutAWordIsTold) {
    const std::wstring file =
        WrittenFile(L"misspelt.xml", Stream("<A>\n<SNVTTYPE>105</SNVTTYPE>\n<VALEU>1.5</VALEU>\n</A>\n"));
    const Json inspected = Bench({L"inspect", file});
    EXPECT_EQ(Json::array(), inspected["boxes"]);
    ASSERT_EQ(1U, inspected["checkFindings"].size());
    EXPECT_EQ(9, inspected["checkFindings"][0]["line"]);
    EXPECT_EQ(2, inspected["checkFindings"][0]["column"]);
    EXPECT_TRUE(Has(RunBench({L"inspect", file}).out, ":9:2: error: "));
}

TEST(FindingsTest, ACleanStreamHasNone) {
    EXPECT_EQ(Json::array(), Bench({L"inspect", L"channels"})["checkFindings"]);
    EXPECT_EQ(Json::array(), Bench({L"inspect", L"full"})["checkFindings"]);
}

TEST(FindingsTest, ADocumentThatIsNoXmlIsNamedWithItsPlace) {
    const std::wstring project = WrittenFile(L"no_project.xml", "<Project>\n  <O_Tam_id>\n</Project>\n");
    const std::string told = Bench({L"load", L"channels", project}, 1)["error"]["description"];
    EXPECT_EQ(0U, told.find(Narrow(project) + " is no XML document: line ")) << told;
}

} // namespace

} // namespace benchtest
