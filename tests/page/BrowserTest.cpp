// The device sheet in a real browser: what scripts/look_at_page.py sees of it.

#include "page/Page.h"
#include "tests/Places.h"
#include "tests/ShellWord.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ios>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace pagetest {

using namespace page;
using Json = nlohmann::json;

namespace {

const std::filesystem::path& Folder() {
    static const tests::OwnFolder folder;
    return folder.Path();
}

/// A page with everything on it, whose names are these.
Page PageWith(const std::string& name, std::size_t rows) {
    Page page;
    page.title = name;
    page.subtitle = name;
    page.origin = name;
    page.isChecked = true;
    page.sheet.module = {.name = name, .subtitle = name};
    page.identity = {{"Identity", {{"Name", name}, {"Device", "K7"}, {"Category", ""}}},
                     {"Versions", {{name, name}}}};
    Table table{"Attributes",
                "How the module is configured.",
                "None.",
                {{"Name"},
                 {"Type"},
                 {"Unit"},
                 {"Limits", true},
                 {"Resolution", true},
                 {"Default", true},
                 {"Value", true},
                 {"Displayed as"},
                 {"Address", true},
                 {"Marks"}},
                {}};
    for (std::size_t i = 0; i < rows; ++i) {
        const std::string number = std::to_string(i + 1);
        page.sheet.module.inputs.push_back(
            {.name = name, .type = "81 lev_percent", .address = number, .isHidden = i % 3 == 2});
        page.sheet.module.outputs.push_back({.name = "AI" + number + "_Out",
                                             .type = name,
                                             .address = number,
                                             .isWired = i % 2 == 0,
                                             .wiredTo = name});
        table.rows.push_back({{"AI" + number + "_Offset", name},
                              {"147 temp_diff_p", "SignedNumeric"},
                              {"degrees C"},
                              {"-327.68 to 327.66"},
                              {"0.01"},
                              {"0.00"},
                              {name},
                              {"-0.50 \u00B0C"},
                              {number},
                              {""}});
    }
    page.points = {table, {"Inputs", "", "The module has no inputs.", {}, {}}};
    page.enumerations = {{name, name, {{"0", "ST_OFF"}, {"1", name}}}};
    page.findings = {{Severity::Error, "unknown-element", 12, 4, name, name},
                     {Severity::Warning, "retired-type", 1, 2, name},
                     {Severity::Note, name, 0, 0, name}};
    return page;
}

/// The block of a device: channels at the module's sides, one line around it.
Page PageWithChannels() {
    Page page = PageWith("Reading room", 2);
    page.sheet.channels = {
        {.name = "AI1", .subtitle = "Analogue input", .outputs = {{.name = "Out", .type = "105 temp_p"}}},
        {.name = "AO1",
         .subtitle = "Analogue output",
         .inputs = {{.name = "In1", .type = "81 lev_percent"}, {.name = "In2", .isHidden = true}},
         .outputs = {{.name = "Out"}}}};
    using drawing::Side;
    page.sheet.mirrors = {{{0, Side::Output, 0}, {1, Side::Output, 0}},
                          {{0, Side::Input, 0}, {2, Side::Input, 0}},
                          {{0, Side::Output, 1}, {2, Side::Output, 0}}};
    return page;
}

Page EmptyPage() {
    Page page;
    page.origin = "Made by tambench.";
    return page;
}

const std::string kScript =
    "<script>document.title = 'run'; console.log('run')</script><img src=\"http://127.0.0.1:9/a\">";

std::string Write(const std::string& name, const std::string& html) {
    const std::filesystem::path path = Folder() / name;
    std::ofstream(path, std::ios::binary) << html;
    return path.string();
}

/// A page on which there is something to see of every kind that is looked for.
constexpr const char* kFaulty = R"(<!DOCTYPE html><html><head><meta charset="utf-8"><title>a</title></head>
<body><p style="color:#aaa">faint</p><div style="width:3000px">wide</div><img src="missing.png">
<table><thead><tr><th style="text-align:right">askew</th></tr></thead><tbody><tr><td>b</td></tr></tbody></table>
<script>console.log("said")</script></p></body></html>)";

/// What was seen of each page. The browser is started once.
const Json& Seen() {
    static const Json seen = [] {
        std::string command = "/usr/bin/python3 " +
                              tests::ShellWord((tests::TopFolder() / "scripts" / "look_at_page.py").string());
        for (const std::string& page : {Write("large.html", Html(PageWith("Air handling, floor 2", 34))),
                                        Write("hostile.html", Html(PageWith(kScript, 3))),
                                        Write("long.html", Html(PageWith(std::string(3000, 'W'), 3))),
                                        Write("empty.html", Html(EmptyPage())), Write("faulty.html", kFaulty),
                                        Write("device.html", Html(PageWithChannels()))}) {
            command += " " + tests::ShellWord(page);
        }
        const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
        std::string text;
        std::array<char, 65536> part{};
        for (std::size_t size = 0; (size = fread(part.data(), 1, part.size(), pipe.get())) > 0;) {
            text.append(part.data(), size);
        }
        return Json::parse(text, nullptr, false);
    }();
    return seen;
}

struct Case {
    std::size_t index;
    const char* name;
};

class BrowserTest : public testing::TestWithParam<Case> {
  protected:
    void SetUp() override {
        ASSERT_TRUE(Seen().is_array()) << "the browser did not answer";
        page_ = Seen().at(GetParam().index);
        ASSERT_EQ(6U, page_["views"].size());
    }
    /// Both schemes, three widths.
    const Json& Views() const { return page_["views"]; }
    static std::string NameOf(const Json& view) {
        return view["scheme"].get<std::string>() + " " + view["width"].dump();
    }

    Json page_;
};

TEST_P(BrowserTest, AsksForNothing) {
    for (const Json& view : Views()) {
        EXPECT_EQ(Json::array(), view["requests"]) << NameOf(view);
    }
}

TEST_P(BrowserTest, LeavesTheConsoleEmpty) {
    for (const Json& view : Views()) {
        EXPECT_EQ(Json::array(), view["messages"]) << NameOf(view);
    }
    EXPECT_EQ(0, page_["scripts"]);
}

TEST_P(BrowserTest, FitsTheWindow) {
    for (const Json& view : Views()) {
        EXPECT_GE(0, view["overflow"].get<int>()) << NameOf(view);
        EXPECT_EQ(Json::array(), view["wide"]) << NameOf(view);
        EXPECT_LT(5, view["texts"].get<int>()) << NameOf(view);
    }
}

TEST_P(BrowserTest, HasTheHeadingsOfColumnsAboveTheirTexts) {
    for (const Json& view : Views()) {
        EXPECT_EQ(Json::array(), view["askew"]) << NameOf(view);
    }
}

TEST_P(BrowserTest, CanBeReadInLightAndInDark) {
    for (const Json& view : Views()) {
        EXPECT_EQ(Json::array(), view["faint"]) << NameOf(view);
        EXPECT_EQ(Json::array(), view["covered"]) << NameOf(view);
    }
}

TEST_P(BrowserTest, CanBeWalkedThroughByKeyboard) {
    for (const Json& view : Views()) {
        ASSERT_LE(3U, view["focus"].size()) << NameOf(view);
        EXPECT_EQ("Skip to the content", view["focus"][0]["text"]);
        for (const Json& place : view["focus"]) {
            EXPECT_TRUE(place["isOutlined"].get<bool>() && place["isSeen"].get<bool>()) << place.dump();
        }
    }
}

TEST_P(BrowserTest, CanBeReadAloud) {
    for (const Json& view : Views()) {
        EXPECT_EQ(Json::array(), view["nameless"]) << NameOf(view);
        for (const char* const role : {"banner", "navigation", "main", "contentinfo"}) {
            EXPECT_EQ(1, view["roles"].value(role, 0)) << role << ", " << NameOf(view);
        }
        // Beside the module, or apart where there is no room.
        const bool isApart = std::string(GetParam().name) == "Device" && view["width"] < 992;
        EXPECT_EQ(isApart ? 3 : 1, view["roles"].value("image", 0)) << NameOf(view);
        for (const Json& table : view["tables"]) {
            EXPECT_NE("", table) << NameOf(view);
        }
    }
}

TEST_P(BrowserTest, HasNumberedPagesOnPaper) {
    const Json& paper = page_["paper"];
    EXPECT_EQ("594.96 x 841.92 pts (A4)", paper["size"]);
    const auto pages = paper["pages"].get<std::size_t>();
    ASSERT_EQ(pages, paper["numbers"].size());
    for (std::size_t i = 0; i < pages; ++i) {
        EXPECT_EQ(Json("Page " + std::to_string(i + 1) + " of " + std::to_string(pages)),
                  paper["numbers"][i]);
    }
}

TEST_P(BrowserTest, IsWellFormed) {
    EXPECT_EQ(Json::array(), page_["form"]);
}

INSTANTIATE_TEST_SUITE_P(Pages, BrowserTest,
                         testing::Values(Case{0, "Large"}, Case{1, "Hostile"}, Case{2, "Long"},
                                         Case{3, "Empty"}, Case{5, "Device"}),
                         [](const auto& chosen) { return std::string(chosen.param.name); });

TEST(BrowserScreenTest, KeepsTheRowsOfTablesForReadersWhenTheyAreCards) {
    for (const Json& view : Seen().at(0)["views"]) {
        EXPECT_EQ(2, view["roles"].value("table", 0));
        EXPECT_EQ(34 + 2, view["roles"].value("rowheader", 0));
        EXPECT_EQ(9 * 34 + 2, view["roles"].value("cell", 0));
    }
}

TEST(BrowserScreenTest, HasTheWholeBlockOnTheFirstSheetOfPaper) {
    const std::string texts = Seen().at(0)["paper"]["texts"];
    const std::string first = texts.substr(0, texts.find('\f'));
    EXPECT_NE(std::string::npos, first.find("AI1_Out"));
    EXPECT_NE(std::string::npos, first.find("AI34_Out"));
    EXPECT_NE(std::string::npos, first.find("Pale names are hidden."));
}

TEST(BrowserScreenTest, ShowsANameWithMarkupAsText) {
    EXPECT_EQ(Json(kScript), Seen().at(1)["title"]);
    EXPECT_NE(std::string::npos, Seen().at(1)["paper"]["texts"].get<std::string>().find("<script>"));
}

// What finds nothing must be able to find something.
TEST(BrowserScreenTest, SeesTheFaultsOfAFaultyPage) {
    const Json& page = Seen().at(4);
    EXPECT_NE(Json::array(), page["form"]);
    EXPECT_EQ(1, page["scripts"]);
    EXPECT_EQ(0U, page["paper"]["numbers"].size());
    for (const Json& view : page["views"]) {
        EXPECT_LT(1000, view["overflow"].get<int>());
        EXPECT_NE(Json::array(), view["wide"]);
        EXPECT_EQ(Json{"askew"}, view["askew"]);
        EXPECT_EQ(1U, view["requests"].size());
        EXPECT_LE(1U, view["messages"].size());
        EXPECT_EQ(Json{"faint: 2.32"}, view["faint"]);
        EXPECT_EQ(0, view["roles"].value("main", 0));
    }
}

} // namespace

} // namespace pagetest
