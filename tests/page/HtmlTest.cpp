#include "page/Base64.h"
#include "page/Page.h"
#include "page/Sha256.h"
#include "page/Style.h"
#include "tests/CountOf.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace pagetest {

using namespace page;
using tests::CountOf;

namespace {

bool Holds(const std::string& text, const std::string& part) {
    return CountOf(text, part) > 0;
}

Page SmallPage() {
    Page page;
    page.title = "Reading room";
    page.subtitle = "Remote I/O module";
    page.sheet.module.name = "Reading room";
    page.sheet.module.inputs = {{.name = "AO1_In1", .type = "81 lev_percent", .address = "1"}};
    page.identity = {{"Identity", {{"Device", "K7"}, {"Category", ""}}}};
    page.points = {{"Attributes",
                    "How the module is configured.",
                    "The module has no attributes.",
                    {{"Name"}, {"Type"}, {"Value", true}},
                    {{{"AI1_Offset", "Correction of the sensor"}, {"147 temp_diff_p"}, {"-0.50"}},
                     {{"AI1_Label"}, {"36 str_asc"}, {""}}}}};
    page.enumerations = {{"95 switch", "DI1_Invert", {{"0", "ST_OFF"}, {"1", "ST_ON"}}}};
    page.origin = "Made by tambench of small.xml.";
    return page;
}

TEST(HtmlTest, ShowsEachPointInARowThatItsNameHeads) {
    const std::string html = Html(SmallPage());
    EXPECT_TRUE(Holds(html, "<caption>How the module is configured.</caption>"));
    EXPECT_TRUE(Holds(html, "<th scope=\"col\">Name</th><th scope=\"col\">Type</th>"
                            "<th scope=\"col\" class=\"number\">Value</th>"));
    EXPECT_TRUE(Holds(html,
                      "<th scope=\"row\"><span>AI1_Offset</span><span class=\"cell-note\">Correction of "
                      "the sensor</span></th><td data-label=\"Type\"><span>147 temp_diff_p</span></td>"
                      "<td class=\"number\" data-label=\"Value\"><span>-0.50</span></td>"));
}

TEST(HtmlTest, ShowsChannelsBesideTheModuleAndInNarrowWindowsBelowIt) {
    Page page = SmallPage();
    page.sheet.channels = {{.name = "AO1", .inputs = {{.name = "In1"}}}};
    page.sheet.mirrors = {{{0, drawing::Side::Input, 0}, {1, drawing::Side::Input, 0}}};
    const std::string html = Html(page);
    const std::size_t narrow = html.find("<div class=\"block-narrow\">");
    const std::string wide = html.substr(0, narrow);
    EXPECT_TRUE(Holds(wide, "<title>input In1</title>"));
    EXPECT_EQ(CountOf(wide, "<svg"), 1U);
    EXPECT_EQ(CountOf(html.substr(narrow), "<svg"), 2U);
    EXPECT_TRUE(Holds(html.substr(narrow), "<title>input In1, wired to AO1_In1</title>"));
    EXPECT_TRUE(Holds(html, "1 channel beside it, 1 point of them joined to the module&#39;s items."));
    EXPECT_TRUE(Holds(html, "Lines join points that have one value; "));
    EXPECT_EQ(CountOf(Html(SmallPage()), "<svg"), 2U);
}

TEST(HtmlTest, CountsRowsInHeadingsAndContents) {
    const std::string html = Html(SmallPage());
    EXPECT_TRUE(Holds(html, "<h2 id=\"points-1\">Attributes <span class=\"count\">(2)</span></h2>"));
    EXPECT_TRUE(Holds(html, "<a href=\"#points-1\">Attributes <span class=\"count\">(2)</span></a>"));
}

TEST(HtmlTest, SaysWhenThereIsNothing) {
    Page page = SmallPage();
    page.points[0].rows.clear();
    page.enumerations.clear();
    const std::string html = Html(page);
    EXPECT_TRUE(Holds(html, "<p class=\"about\">The module has no attributes.</p>"));
    EXPECT_FALSE(Holds(html, "<table"));
    EXPECT_FALSE(Holds(html, "id=\"enumerations\""));
    EXPECT_TRUE(Holds(html, "<dt>Category</dt><dd><span class=\"none\">\u2013</span></dd>"));
}

TEST(HtmlTest, ShowsEnumerationsInFull) {
    const std::string html = Html(SmallPage());
    EXPECT_TRUE(Holds(html, "<caption><h3>95 switch</h3><p>DI1_Invert</p></caption>"));
    EXPECT_TRUE(Holds(html, "<th scope=\"row\">0</th><td>ST_OFF</td>"));
    EXPECT_TRUE(Holds(html, "<th scope=\"row\">1</th><td>ST_ON</td>"));
}

TEST(HtmlTest, ShowsFindingsOnlyOfWhatWasChecked) {
    Page page = SmallPage();
    EXPECT_FALSE(Holds(Html(page), "findings\""));
    page.isChecked = true;
    EXPECT_TRUE(Holds(Html(page), "<p class=\"good\">"));
    page.findings = {
        {Severity::Error, "unknown-element", 12, 4, "There is no <VALEU> here.", "Did you mean VALUE?"},
        {Severity::Warning, "retired-type", 0, 0, "Type 8 is retired."}};
    const std::string html = Html(page);
    EXPECT_TRUE(Holds(html,
                      "<li class=\"error\"><span class=\"severity\">Error</span> <span class=\"place\">line "
                      "12, column 4 <code>unknown-element</code></span>\n<p class=\"message\">There is no "
                      "&lt;VALEU&gt; here.</p><p class=\"message\">Did you mean VALUE?</p></li>"));
    EXPECT_TRUE(Holds(html, "<li class=\"warning\"><span class=\"severity\">Warning</span> <span "
                            "class=\"place\"><code>retired-type</code></span>"));
    EXPECT_FALSE(Holds(html, "<p class=\"good\">"));
}

TEST(HtmlTest, WritesEveryTextAsText) {
    const std::string bad = "<script>alert(1)</script>\"'&";
    Page page;
    page.title = page.subtitle = page.origin = bad;
    page.sheet.module = {.name = bad, .subtitle = bad};
    page.sheet.module.inputs = {{.name = bad, .type = bad, .address = bad, .isWired = true, .wiredTo = bad}};
    page.identity = {{bad, {{bad, bad}}}};
    page.points = {{bad, bad, bad, {{bad}, {bad, true}}, {{{bad, bad}, {bad, bad}}}},
                   {bad, bad, bad, {}, {}}};
    page.enumerations = {{bad, bad, {{bad, bad}}}};
    page.isChecked = true;
    page.findings = {{Severity::Note, bad, 1, 1, bad, bad}};
    const std::string html = Html(page);
    EXPECT_FALSE(Holds(html, "<script"));
    EXPECT_FALSE(Holds(html, "\"'&"));
    EXPECT_FALSE(Holds(html, "\"'"));
    EXPECT_LT(30U, CountOf(html, "&lt;script&gt;"));
}

TEST(HtmlTest, AllowsNoScriptsAndNothingFromElsewhere) {
    const std::string html = Html(SmallPage());
    const std::array<std::uint8_t, 32> digest = Sha256(Style());
    const std::string hash = Base64(std::string(digest.begin(), digest.end()));
    EXPECT_TRUE(
        Holds(html, "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; img-src "
                    "data:; style-src 'sha256-" +
                        hash + "'; base-uri 'none'; form-action 'none'\">"));
    EXPECT_TRUE(Holds(html, "<style>" + Style() + "</style>"));
    EXPECT_EQ(1U, CountOf(html, "<style"));
    EXPECT_FALSE(Holds(html, " style="));
    EXPECT_FALSE(Holds(html, "<script"));
    EXPECT_FALSE(Holds(html, "https://"));
    // The name of SVG's own language is no address that is fetched.
    EXPECT_EQ(CountOf(html, "http://"), CountOf(html, "xmlns=\"http://www.w3.org/2000/svg\""));
    EXPECT_FALSE(Holds(Style(), "url("));
    EXPECT_FALSE(Holds(Style(), "@import"));
    EXPECT_FALSE(Holds(Style(), "<"));
}

TEST(HtmlTest, HoldsTheBlockForWideAndForNarrowWindows) {
    const std::string html = Html(SmallPage());
    EXPECT_EQ(2U, CountOf(html, "<svg "));
    EXPECT_TRUE(Holds(html, "aria-labelledby=\"block-wide-title block-wide-description\""));
    EXPECT_TRUE(Holds(html, "aria-labelledby=\"block-narrow-title block-narrow-description\""));
    EXPECT_TRUE(Holds(html, ">1 input at the left, 0 outputs at the right, 0 points wired.</desc>"));
}

TEST(HtmlTest, GivesEachElementAnIdentifierOfItsOwn) {
    Page page = SmallPage();
    page.isChecked = true;
    page.points.push_back(page.points[0]);
    const std::string html = Html(page);
    std::size_t at = 0;
    std::size_t count = 0;
    while ((at = html.find(" id=\"", at)) != std::string::npos) {
        const std::string id = html.substr(at + 1, html.find('"', at + 5) - at);
        EXPECT_EQ(1U, CountOf(html, " " + id)) << id;
        ++count;
        at += 5;
    }
    EXPECT_LE(10U, count);
}

TEST(HtmlTest, NamesAPageWithoutAName) {
    Page page = SmallPage();
    page.title.clear();
    EXPECT_TRUE(Holds(Html(page), "<title>Device sheet</title>"));
    EXPECT_TRUE(Holds(Html(page), "<h1>Device sheet</h1>"));
}

TEST(HtmlSvgTest, IsADocumentOfItsOwn) {
    Page page = SmallPage();
    page.icon = "abc";
    page.sheet.module.hasIcon = true;
    const std::string svg = page::Svg(page);
    EXPECT_TRUE(svg.starts_with("<svg xmlns=\"http://www.w3.org/2000/svg\""));
    EXPECT_TRUE(Holds(svg, "<style>"));
    EXPECT_TRUE(Holds(svg, "href=\"data:image/png;base64,YWJj\""));
    EXPECT_TRUE(Holds(svg, "<title id=\"block-title\">The block of Reading room</title>"));
}

} // namespace

} // namespace pagetest
