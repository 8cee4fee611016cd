#include "view/model/ProjectText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace view;

namespace {

std::string Element(const std::string& name, const std::string& device, const std::string& object,
                    const std::string& rest) {
    return "<" + name + "><DevKey>" + device + "</DevKey>" + object + rest + "</" + name + ">";
}
std::string Module(const std::string& device, const std::string& number, const std::string& rest = {}) {
    return Element("O_Tam_id", device, "<TamObjID>" + number + "</TamObjID>", rest);
}
std::string Stream(const std::string& device, const std::string& number, const std::string& rest = {}) {
    return Element("Tam", device, "<TAMOBJID>" + number + "</TAMOBJID>", rest);
}
std::string Channel(const std::string& name, const std::string& key, const std::string& rest = {}) {
    return Element(name, "K7", "<TamObjectKey>" + key + "</TamObjectKey>", rest);
}

TEST(ProjectTextTest, WhatIsNewComesAfterAllOthers) {
    EXPECT_EQ("<Project>\n  " + Module("K7", "1") + "\n  " + Stream("K7", "1") + "\n</Project>\n",
              WithElements("<Project>\n</Project>\n", {Module("K7", "1"), Stream("K7", "1")}));
    EXPECT_EQ("<Project><Other/>\n  " + Module("K7", "1") + "\n</Project>",
              WithElements("<Project><Other/></Project>", {Module("K7", "1")}));
    EXPECT_EQ("<Project a=\">\">\n  " + Module("K7", "1") + "\n</Project>",
              WithElements("<Project a=\">\"/>", {Module("K7", "1")}));
}

TEST(ProjectTextTest, TheNewTakesThePlaceOfTheOld) {
    const std::string before =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<!-- first -->\r\n<?a b?>\n<Project>\n"
        "\t<Other><!-- </Tam> --><![CDATA[</Project>]]> mixed <b/> text&#10;</Other>\r\n";
    const std::string after = "\r\n  <!-- last --></Project>\n<!-- after -->\n";
    const std::string old = before + Module("K7", "1", "<a/>") + "<x/>" + Module("K7", "2") +
                            Stream("K8", "1") + Stream("K7", "1", "<!-- </Tam> --><b>1</b>") + after;
    EXPECT_EQ(before + Module("K7", "1", "<new/>") + "<x/>" + Module("K7", "2") + Stream("K8", "1") +
                  Stream("K7", "1", "<b>2</b>") + after,
              WithElements(old, {Module("K7", "1", "<new/>"), Stream("K7", "1", "<b>2</b>")}));
}

TEST(ProjectTextTest, NumbersAreComparedAsTheComponentReadsThem) {
    for (const char* number : {"01", "1.0", " 1", "1 x"}) {
        EXPECT_EQ(
            "<Project>" + Stream("K7", "1", "<b/>") + "</Project>",
            WithElements("<Project>" + Stream("K7", number) + "</Project>", {Stream("K7", "1", "<b/>")}))
            << number;
    }
}

TEST(ProjectTextTest, AChannelIsKnownByItsKey) {
    EXPECT_EQ("<Project>" + Channel("o_tam_ai_id", "AI1", "<b/>") + Channel("o_tam_ai_id", "AI2") +
                  "</Project>",
              WithElements("<Project>" + Channel("o_tam_ao_id", "ai1") + Channel("o_tam_ai_id", "AI2") +
                               "</Project>",
                           {Channel("o_tam_ai_id", "AI1", "<b/>")}));
}

// A module that was copied by hand and has no number of its own yet.
TEST(ProjectTextTest, OfTwoThatAreTheSameTheFirstIsReplaced) {
    EXPECT_EQ("<Project>\n  " + Stream("K7", "1", "<b/>") + "\n  <x/>\n  " + Stream("K7", "1") +
                  "\n</Project>",
              WithElements("<Project>\n  " + Stream("K7", "1") + "\n  <x/>\n  " + Stream("K7", "1") +
                               "\n</Project>",
                           {Stream("K7", "1", "<b/>")}));
}

TEST(ProjectTextTest, AModuleIsInAProjectByItsKeyAndNumber) {
    const std::string project =
        "<Project><x/>" + Stream("K7", "1") + Channel("o_tam_ai_id", "AI1") + "</Project>";
    EXPECT_TRUE(HasModuleOf(project, Stream("K7", "1", "<b/>")));
    EXPECT_FALSE(HasModuleOf(project, Stream("K7", "3")));
    EXPECT_FALSE(HasModuleOf(project, Stream("K8", "1")));
    EXPECT_FALSE(HasModuleOf("<Project/>", Stream("K7", "1")));
}

// Other programs save no stream.
TEST(ProjectTextTest, AModuleIsInAProjectByTheComponentsElementAlone) {
    const std::string project = "<Project>" + Module("K7", "01", "<UserName>x</UserName>") +
                                Channel("o_tam_ai_id", "AI1") + "</Project>";
    EXPECT_TRUE(HasModuleOf(project, Stream("K7", "1")));
    EXPECT_FALSE(HasModuleOf(project, Stream("K7", "2")));
    EXPECT_FALSE(HasModuleOf(project, Stream("K7", "0"))) << "a channel has no number";
}

TEST(ProjectTextTest, AnotherEncodingIsDeclaredNoMore) {
    EXPECT_EQ(
        "<?xml version='1.0' encoding='UTF-8' standalone='yes'?><Project>\n  <a/>\n</Project>",
        WithElements("<?xml version='1.0' encoding='windows-1252' standalone='yes'?><Project/>", {"<a/>"}));
    EXPECT_EQ("<?xml version='1.0'?><Project encoding='x'>\n  <a/>\n</Project>",
              WithElements("<?xml version='1.0'?><Project encoding='x'/>", {"<a/>"}));
}

TEST(ProjectTextTest, ElementsAreTakenAsTheyStand) {
    EXPECT_EQ("<a>\n<!-- </a> --></a>",
              RootOf("<?xml version=\"1.0\"?>\n<!-- <b> --><a>\n<!-- </a> --></a>\n<!-- c -->"));
    EXPECT_EQ((std::vector<std::string>{"<a b='>'>\n <c>x</c><!-- </a> -->\n</a>", "<d/>"}),
              ElementsOf("<?xml version=\"1.0\"?>\n<Project>\n  <a b='>'>\n <c>x</c><!-- </a> -->\n</a>\n "
                         "<d/></Project>"));
}

} // namespace
