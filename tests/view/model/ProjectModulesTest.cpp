#include "view/model/ProjectModules.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace view;

namespace {

std::string Stream(const std::string& device, const std::string& number, const std::string& inside = {}) {
    return "<Tam><Name>Hall " + number + "</Name><DevKey>" + device + "</DevKey><TamObjID>" + number +
           "</TamObjID>" + inside + "</Tam>";
}

TEST(ProjectModulesTest, ListsTheStreamsInTheirOrder) {
    const std::string first = Stream("K7", "2");
    const std::string second = Stream("K8", "1");
    const std::string text = "<?xml version='1.0'?>\n<!-- <Tam/> --><Project><O_Tam_id/>" + first +
                             "<Other><Tam/></Other>\n" + second + "</Project>";
    const std::vector<ProjectModule> modules = ModulesOf(text);
    ASSERT_EQ(2U, modules.size());
    EXPECT_EQ((ModuleKey{L"K7", 2}), modules[0].key);
    EXPECT_EQ(L"Hall 2", modules[0].name);
    EXPECT_EQ(first, text.substr(modules[0].begin, modules[0].end - modules[0].begin));
    EXPECT_EQ((ModuleKey{L"K8", 1}), modules[1].key);
    EXPECT_EQ(second, text.substr(modules[1].begin, modules[1].end - modules[1].begin));
}

TEST(ProjectModulesTest, AnEndTagInACommentEndsNothing) {
    for (const char* inside :
         {"<!-- </Tam> -->", "<a><![CDATA[</Tam>]]></a>", "<?p </Tam>?>", "<a b='</Tam>'/>", "<Tam></Tam>"}) {
        const std::string stream = Stream("K7", "1", inside);
        const std::string text = "<Project>" + stream + "</Project>";
        const std::vector<ProjectModule> modules = ModulesOf(text);
        ASSERT_EQ(1U, modules.size()) << inside;
        EXPECT_EQ(stream, text.substr(modules[0].begin, modules[0].end - modules[0].begin)) << inside;
    }
}

TEST(ProjectModulesTest, AStreamThatIsNotClosedGoesToTheEnd) {
    const std::string text = "<Project><Tam><DevKey>K7</DevKey>";
    const std::vector<ProjectModule> modules = ModulesOf(text);
    ASSERT_EQ(1U, modules.size());
    EXPECT_EQ(text.size(), modules[0].end);
}

TEST(ProjectModulesTest, OnlyAProjectHasModules) {
    EXPECT_TRUE(ModulesOf(Stream("K7", "1")).empty());
    EXPECT_TRUE(ModulesOf("<Device/>").empty());
    EXPECT_TRUE(ModulesOf("").empty());
    EXPECT_TRUE(ModulesOf("<Project/>").empty());
}

TEST(ProjectModulesTest, TheObjectNumberIsTheLeadingNumber) {
    EXPECT_EQ(1, ObjectNumberOf(L"1"));
    EXPECT_EQ(1, ObjectNumberOf(L"01"));
    EXPECT_EQ(1, ObjectNumberOf(L" 1.0 "));
    EXPECT_EQ(12, ObjectNumberOf(L"12 of 13"));
    EXPECT_EQ(0, ObjectNumberOf(L""));
    EXPECT_EQ(0, ObjectNumberOf(L"none"));
    EXPECT_EQ(0, ObjectNumberOf(L"99999")) << "no module has it";
}

} // namespace
