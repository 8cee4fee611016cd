// sheet: the page that the bench writes of a module. What it looks like in a browser
// is tested where the page is made (tests/page).

#include "tests/bench/DeviceRun.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace benchtest {

namespace {

std::string SheetOf(const std::wstring& stream, const std::vector<std::wstring>& more = {}) {
    const std::wstring file = ScratchFolder() + L"sheet.html";
    std::vector<std::wstring> arguments{L"sheet", stream, L"-o", file};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const Outcome outcome = RunBench(arguments);
    EXPECT_EQ(0U, outcome.status) << outcome.err;
    return ReadFileBytes(file);
}

bool Holds(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// The texts of a point's row below its name, by the columns' titles; a note stands
/// after its text.
Json RowOf(const std::string& html, const std::string& name) {
    Json row = Json::object();
    const std::size_t start = html.find("<th scope=\"row\"><span>" + name + "</span>");
    if (start == std::string::npos) {
        ADD_FAILURE() << "no row " << name;
        return row;
    }
    const std::string line = html.substr(start, html.find("</tr>", start) - start);
    const std::string label = "data-label=\"";
    for (std::size_t at = line.find(label); at != std::string::npos; at = line.find(label, at + 1)) {
        const std::size_t from = at + label.size();
        const std::string title = line.substr(from, line.find('"', from) - from);
        const std::size_t content = line.find('>', from) + 1;
        std::string text;
        bool isTag = false;
        for (const char c : line.substr(content, line.find("</td>", content) - content)) {
            if (c == '<') {
                isTag = true;
            } else if (c == '>') {
                isTag = false;
            } else if (!isTag) {
                text += c;
            }
        }
        row[title] = text;
    }
    return row;
}

TEST(SheetTest, TellsTypeLimitsDefaultAndValueOfAnAttribute) {
    const std::string html = SheetOf(L"channels");
    EXPECT_EQ((Json{{"Type", "147 temp_diff_pSignedNumeric"},
                    {"Unit", "degrees C"},
                    {"Limits", Local("-327.68") + " to " + Local("327.66") + "invalid: " + "327.67"},
                    {"Resolution", Local("0.01")},
                    {"Default", "0.00"},
                    {"Value", "-0.50"},
                    {"Displayed as", Local("-0.50 \u00B0C")},
                    {"Address", "11"},
                    {"Marks", "permanent"}}),
              RowOf(html, "AI1_Offset"));
    EXPECT_TRUE(
        Holds(html, "<span>AI1_Offset</span><span class=\"cell-note\">Correction of the sensor</span>"));
}

TEST(SheetTest, DisplaysValuesInUsUnitsOnDemand) {
    const Json row = RowOf(SheetOf(L"channels", {L"--us"}), "AI1_Offset");
    EXPECT_EQ(Json(Local("-0.9 \u00B0F")), row["Displayed as"]);
    EXPECT_EQ("-0.50", row["Value"]);
    EXPECT_EQ("degrees C", row["Unit"]);
}

TEST(SheetTest, TellsTypeAndWireOfAnInput) {
    const std::string html = SheetOf(L"channels");
    EXPECT_EQ((Json{{"Type", "81 lev_percentSignedNumeric"},
                    {"Unit", "%"},
                    {"Limits", Local("-163.84") + " to " + Local("163.83") + "invalid: 163.835"},
                    {"Resolution", Local("0.005")},
                    {"Accepts", "81, 21, 55"},
                    {"Wired to", "\u2013"},
                    {"Address", "1"},
                    {"Marks", "permanent"}}),
              RowOf(html, "AO1_In1"));
    EXPECT_EQ("DI1_Out", RowOf(html, "DO1_In1")["Wired to"]);
    EXPECT_EQ("\u2013", RowOf(html, "DO1_In1")["Marks"]);
    EXPECT_EQ("\u2013", RowOf(html, "CTX1_In1")["Wired to"]);
}

TEST(SheetTest, TellsWhichInputsAnOutputDrives) {
    const std::string html = SheetOf(L"full");
    EXPECT_EQ("DO1_In1", RowOf(html, "DI1_Out")["Wired to"]);
    // Its reference is written in small letters.
    EXPECT_EQ("DO2_In1", RowOf(html, "DI2_Out")["Wired to"]);
    EXPECT_EQ("\u2013", RowOf(html, "AI2_Out")["Wired to"]);
    EXPECT_EQ("K4_Supply_Out", RowOf(html, "AO2_In1")["Wired to"]);
}

TEST(SheetTest, ShowsTheBlockWithItsIcon) {
    const std::string html = SheetOf(L"channels");
    EXPECT_TRUE(Holds(html, "<g><title>input DO1_In1, type 95 switch, address 2, wired to DI1_Out</title>"));
    EXPECT_TRUE(Holds(html, "<g><title>output DI1_Out, type 95 switch, address 6, wired to DO1_In1</title>"));
    EXPECT_TRUE(Holds(html, "<g><title>input AO1_In1, type 81 lev_percent, address 1</title>"));
    EXPECT_TRUE(Holds(html, "href=\"data:image/png;base64,iVBOR"));
}

TEST(SheetTest, TellsWhatTheModuleIs) {
    const std::string html = SheetOf(L"channels");
    EXPECT_TRUE(Holds(html, "<h1>Reading room</h1>"));
    EXPECT_TRUE(Holds(html, "<dt>Identifier</dt><dd>TAM24</dd>"));
    EXPECT_TRUE(Holds(html, "<dt>Device</dt><dd>K7</dd>"));
    EXPECT_TRUE(Holds(html, "<dt>Object number</dt><dd>1</dd>"));
    EXPECT_TRUE(Holds(html, "<dt>Component</dt><dd>O_Tam_id.dll 1.0.0</dd>"));
    EXPECT_TRUE(Holds(html, "<dt>Definition</dt><dd>O_Tam_id.xml</dd>"));
    EXPECT_TRUE(Holds(html, "<dt>Catalogue</dt><dd>catalogue.xml, 221 types</dd>"));
    EXPECT_TRUE(Holds(html, "<footer>Made by tambench of channels.xml.</footer>"));
}

TEST(SheetTest, ListsEnumerationsInFull) {
    const std::string html = SheetOf(L"channels");
    const std::size_t at = html.find("<caption><h3>162 ");
    ASSERT_NE(std::string::npos, at);
    const std::string table = html.substr(at, html.find("</table>", at) - at);
    EXPECT_TRUE(Holds(table, "<p>AO1_Setup</p>"));
    EXPECT_TRUE(Holds(table, "<th scope=\"row\">21</th><td>DCM_LINEAR</td>"));
    EXPECT_TRUE(Holds(table, "<th scope=\"row\">-1</th>"));
}

TEST(SheetTest, WritesMarkupInNamesAsText) {
    const std::wstring stream = WrittenFile(
        L"markup.xml", "<Tam><Name>&lt;script&gt;alert(1)&lt;/script&gt;</Name><DevKey>&lt;b&gt;</DevKey>"
                       "<IsLastOnDev>0</IsLastOnDev><TamObjID>1</TamObjID><Attributes><A><DESCRIPTION>"
                       "&lt;i&gt;</DESCRIPTION><SNVTTYPE>36</SNVTTYPE><VALUE>&lt;u&gt;</VALUE></A>"
                       "</Attributes></Tam>");
    const std::string html = SheetOf(stream);
    EXPECT_TRUE(Holds(html, "<h1>&lt;script&gt;alert(1)&lt;/script&gt;</h1>"));
    EXPECT_TRUE(Holds(html, "<dd>&lt;b&gt;</dd>"));
    EXPECT_TRUE(Holds(html, "&lt;i&gt;"));
    EXPECT_EQ("&lt;u&gt;", RowOf(html, "A")["Value"]);
    for (const char* const tag : {"<script", "<b>", "<i>", "<u>"}) {
        EXPECT_FALSE(Holds(html, tag)) << tag;
    }
}

TEST(SheetTest, WritesTheBlockAloneAsAPicture) {
    const std::string svg = SheetOf(L"channels", {L"--svg"});
    EXPECT_TRUE(svg.starts_with("<svg xmlns=\"http://www.w3.org/2000/svg\""));
    EXPECT_TRUE(Holds(svg, "<title>output DI1_Out, type 95 switch, address 6, wired to DO1_In1</title>"));
    EXPECT_FALSE(Holds(svg, "AI1_Offset"));
}

TEST(SheetTest, TellsTheFileThatItWrote) {
    const std::wstring file = ScratchFolder() + L"told.html";
    const Json answer = Bench({L"sheet", L"channels", L"-o", file});
    EXPECT_EQ(Json(Narrow(file)), answer["file"]);
    EXPECT_EQ(Json(ReadFileBytes(file).size()), answer["bytes"]);
    EXPECT_EQ(Json(0), answer["findings"]["errors"]);
}

TEST(SheetTest, TellsWhatIsWrongWithTheStream) {
    const std::wstring stream =
        WrittenFile(L"misspelt.xml",
                    "<Tam><Name>A</Name><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>0</TamObjID>"
                    "<Attributes>\n<A><SNVTTYPE>147</SNVTTYPE><VALEU>1</VALEU></A></Attributes></Tam>");
    const std::string html = SheetOf(stream);
    EXPECT_TRUE(Holds(html, "<span class=\"place\">line 2, column 29 <code>"))
        << html.substr(html.find("<ul"));
    EXPECT_TRUE(Holds(html, "Did you mean VALUE?"));
    EXPECT_TRUE(Holds(SheetOf(L"channels"), "id=\"findings\""));
}

TEST(SheetTest, TakesValuesThatAreSetAfterLoading) {
    EXPECT_EQ(Json(Local("1.50 \u00B0C")),
              RowOf(SheetOf(L"channels", {L"AI1_Offset=1.50"}), "AI1_Offset")["Displayed as"]);
}

TEST(SheetTest, ShowsTheChannelsOfADeviceBesideTheModule) {
    const std::wstring file = ScratchFolder() + L"device.html";
    const Json answer = Bench({L"device", L"sheet", L"-o", file});
    EXPECT_EQ((Json{"AI1", "AO1", "DI1", "DO1", "CTX1"}), answer["channels"]);
    const std::string html = ReadFileBytes(file);
    EXPECT_EQ(Json(html.size()), answer["bytes"]);
    for (const char* const key : {"AI1", "AO1", "DI1", "DO1", "CTX1"}) {
        EXPECT_TRUE(Holds(html, std::string(">Channel ") + key + " <span class=\"count\">")) << key;
    }
    const Json row = RowOf(html.substr(html.find(">Channel AI1 <span class=\"count\">(")), "Offset");
    EXPECT_EQ("attribute", row["Kind"]);
    EXPECT_EQ("-0.50", row["Value"]);
    EXPECT_EQ("AI1_Offset", row["Item of the module"]);
    EXPECT_TRUE(Holds(html, "Made by tambench of device.xml."));
}

TEST(SheetTest, JoinsMirroredPointsByLines) {
    const std::wstring file = ScratchFolder() + L"device.svg";
    Bench({L"device", L"sheet", L"--svg", L"-o", file});
    const std::string svg = ReadFileBytes(file);
    // The module of the sample has six points with pins that channels have too.
    EXPECT_TRUE(Holds(svg, "<title>output AI1_Out, "));
    EXPECT_TRUE(Holds(svg, "<title>output Out, "));
    EXPECT_TRUE(Holds(svg, "class=\"mirror\""));
}

TEST(SheetTest, WantsAFile) {
    EXPECT_EQ(2U, RunBench({L"sheet", L"channels"}).status);
    EXPECT_EQ(2U, RunBench({L"device", L"sheet"}).status);
}

TEST(SheetTest, WritesAModuleWithoutPoints) {
    const std::wstring stream = WrittenFile(
        L"bare.xml",
        "<Tam><Name>Bare</Name><DevKey/><IsLastOnDev>0</IsLastOnDev><TamObjID>0</TamObjID></Tam>");
    const std::string html = SheetOf(stream);
    EXPECT_TRUE(Holds(html, "The module has no inputs."));
    EXPECT_TRUE(Holds(html, "The module has no outputs."));
    EXPECT_TRUE(Holds(html, "The module has no attributes."));
}

} // namespace

} // namespace benchtest
