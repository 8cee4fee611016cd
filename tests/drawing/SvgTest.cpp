#include "drawing/Svg.h"

#include "drawing/Layout.h"
#include "tests/CountOf.h"
#include "tests/drawing/Sheets.h"

#include <gtest/gtest.h>

#include <string>

namespace drawingtest {

using namespace drawing;
using tests::CountOf;

namespace {

std::string SvgOf(const Sheet& sheet, const SvgOptions& options) {
    return Svg(Draw(sheet, EvenWidth), sheet, options);
}

TEST(SvgEscapedTest, WritesMarkupAsText) {
    EXPECT_EQ("&lt;script&gt;alert(&#39;1&#39;)&lt;/script&gt; &amp; &quot;x&quot;",
              Escaped("<script>alert('1')</script> & \"x\""));
    EXPECT_EQ("\u00B0C \u6C34", Escaped("\u00B0C \u6C34"));
    EXPECT_EQ("a\tb\nc", Escaped("a\tb\nc"));
}

TEST(SvgEscapedTest, ReplacesWhatNoDocumentMayHold) {
    EXPECT_EQ("a\uFFFDb\uFFFD", Escaped(std::string("a\0b\x1B", 4)));
    EXPECT_EQ("\uFFFD", Escaped("\r"));
    EXPECT_EQ("\uFFFD", Escaped("\xEF\xBF\xBE"));
    EXPECT_EQ("\uFFFD", Escaped("\xC2"));
    EXPECT_EQ("\uFFFD\uFFFD\u00A0", Escaped("\xC2\x80\xC2\x9F\xC2\xA0"));   // U+0080, U+009F, a blank
    EXPECT_EQ("\uFFFD\uFFFD", Escaped("\xEF\xB7\x90\xEF\xB7\xAF"));         // U+FDD0, U+FDEF
    EXPECT_EQ("\uFFFD\uFFFD", Escaped("\xF0\x9F\xBF\xBE\xF4\x8F\xBF\xBF")); // U+1FFFE, U+10FFFF
}

TEST(SvgInWordsTest, TellsWhatIsKnownOfAPin) {
    EXPECT_EQ("input DO1_In1, type 95 switch, address 2, wired to DI1_Out",
              InWords(WiredPin("DO1_In1", "DI1_Out"), Side::Input));
    EXPECT_EQ("output A, wired", InWords({.name = "A", .isWired = true}, Side::Output));
    EXPECT_EQ("output A, hidden", InWords({.name = "A", .isHidden = true}, Side::Output));
}

TEST(SvgTest, NamesThePictureForThoseWhoDoNotSeeIt) {
    const std::string svg = SvgOf(SmallSheet(), {.title = "A & B", .description = "<two>", .prefix = "p"});
    EXPECT_NE(std::string::npos, svg.find("role=\"img\" aria-labelledby=\"p-title p-description\""));
    EXPECT_NE(std::string::npos, svg.find("<title id=\"p-title\">A &amp; B</title>"));
    EXPECT_NE(std::string::npos, svg.find("<desc id=\"p-description\">&lt;two&gt;</desc>"));
}

TEST(SvgTest, TitlesEachPin) {
    const std::string svg = SvgOf(SmallSheet(), {});
    EXPECT_EQ(5U, CountOf(svg, "<g><title>"));
    EXPECT_EQ(5U, CountOf(svg, "</g>"));
    EXPECT_EQ(1U, CountOf(svg, "<g><title>input AO1_In1, type 81 lev_percent, address 11</title>"));
}

TEST(SvgTest, WritesEveryTextEscaped) {
    Sheet sheet = SmallSheet();
    const std::string bad = "<script>&\"'";
    sheet.module = {.name = bad,
                    .subtitle = bad,
                    .inputs = {{.name = bad, .type = bad, .address = bad, .isWired = true, .wiredTo = bad}},
                    .outputs = {}};
    const std::string svg = SvgOf(sheet, {.title = bad, .description = bad, .icon = bad});
    EXPECT_EQ(0U, CountOf(svg, "<script"));
    EXPECT_EQ(0U, CountOf(svg, "\"'"));
    EXPECT_LT(8U, CountOf(svg, "&lt;script&gt;&amp;&quot;&#39;"));
}

TEST(SvgTest, HasAStyleOfItsOwnOnlyAsADocument) {
    EXPECT_EQ(1U, CountOf(SvgOf(SmallSheet(), {}), "<style>"));
    EXPECT_EQ(1U, CountOf(SvgOf(SmallSheet(), {}), "class=\"ground\""));
    EXPECT_EQ(0U, CountOf(SvgOf(SmallSheet(), {.isDocument = false}), "<style>"));
    EXPECT_EQ(0U, CountOf(SvgOf(SmallSheet(), {.isDocument = false}), "class=\"ground\""));
    // A style of single elements would be refused by a strict content policy.
    EXPECT_EQ(0U, CountOf(SvgOf(SmallSheet(), {}), " style="));
}

TEST(SvgTest, ShowsTheIconThatItIsGiven) {
    EXPECT_EQ(1U, CountOf(SvgOf(SmallSheet(), {.icon = "data:image/png;base64,AA=="}),
                          "href=\"data:image/png;base64,AA==\""));
    EXPECT_EQ(0U, CountOf(SvgOf(SmallSheet(), {}), "<image"));
}

TEST(SvgStyleTest, HasDarkColoursForScreens) {
    const std::string style = SvgStyle();
    EXPECT_EQ(1U, CountOf(style, "@media screen and (prefers-color-scheme:dark){"));
    EXPECT_EQ(2U, CountOf(style, ".block-drawing .wired-pin{fill:"));
    EXPECT_EQ(CountOf(style, "{"), CountOf(style, "}"));
    EXPECT_EQ(std::string::npos, style.find('<'));
}

} // namespace

} // namespace drawingtest
