#include "core/EnumDescription.h"

#include "Thrown.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace tam {
namespace {

TEST(EnumDescriptionLabelTest, GivesTheLabelOfTheValue) {
    EXPECT_EQ(EnumLabel(L"0", L"0,Off;1,On;"), L"Off");
    EXPECT_EQ(EnumLabel(L"1", L"0,Off;1,On;"), L"On");
    EXPECT_EQ(EnumLabel(L"-1", L"0,HVAC_AUTO;-1,HVAC_NUL;"), L"HVAC_NUL");
}

TEST(EnumDescriptionLabelTest, GivesNothingForAValueWithoutEntry) {
    EXPECT_EQ(EnumLabel(L"2", L"0,Off;1,On;"), L"");
    EXPECT_EQ(EnumLabel(L"2", L"0,Off;1,On"), L"");
    EXPECT_EQ(EnumLabel(L"2", L""), L"");
    EXPECT_EQ(EnumLabel(L"2", L"nonsense"), L"");
    EXPECT_EQ(EnumLabel(L"2", L";;"), L"");
}

TEST(EnumDescriptionLabelTest, GivesNothingForAnEmptyValue) {
    EXPECT_EQ(EnumLabel(L"", L"0,Off;"), L"");
    EXPECT_EQ(EnumLabel(L"", L",Off;"), L"");
    EXPECT_EQ(EnumLabel(L"", L""), L"");
}

TEST(EnumDescriptionLabelTest, ComparesTheValueAsTextWithCase) {
    EXPECT_EQ(EnumLabel(L"a", L"A,upper;a,lower;"), L"lower");
    EXPECT_EQ(EnumLabel(L"1", L"01,one;1.0,two; 1,three;"), L"");
    EXPECT_EQ(EnumLabel(L"01", L"1,On;"), L"");
    EXPECT_EQ(EnumLabel(L"1", L"11,Eleven;1,One;"), L"One");
}

TEST(EnumDescriptionLabelTest, TakesTheFirstOfTwoEntries) {
    EXPECT_EQ(EnumLabel(L"1", L"1,a;1,b;"), L"a");
}

TEST(EnumDescriptionLabelTest, LeavesACommaInALabel) {
    EXPECT_EQ(EnumLabel(L"1", L"0,Off;1,On, fast;"), L"On, fast");
    EXPECT_EQ(EnumLabel(L"1", L"1,a,b;2,c;"), L"a,b");
}

TEST(EnumDescriptionLabelTest, GivesAnEmptyLabel) {
    EXPECT_EQ(EnumLabel(L"1", L"1,;2,b;"), L"");
}

TEST(EnumDescriptionLabelTest, RefusesAMatchingLastEntryThatIsNotClosed) {
    EXPECT_EQ(ErrorOf([] { EnumLabel(L"1", L"0,Off;1,On"); }), kInvalidCall);
    EXPECT_EQ(ErrorOf([] { EnumLabel(L"1", L"1,"); }), kInvalidCall);
}

TEST(EnumDescriptionLabelTest, SkipsAnEntryWithoutComma) {
    EXPECT_EQ(EnumLabel(L"1", L"0;1,On;"), L"On");
    EXPECT_EQ(EnumLabel(L"0", L"0;1,On;"), L"");
    EXPECT_EQ(EnumLabel(L"1", L";;1,On;"), L"On");
}

TEST(EnumDescriptionLabelTest, RefusesAValueThatSpansTwoEntries) {
    // The text before the first comma is "0;1"; its label would end before it begins.
    EXPECT_EQ(ErrorOf([] { EnumLabel(L"0;1", L"0;1,On;"); }), kInvalidCall);
    EXPECT_EQ(EnumLabel(L"1", L"x;1,On;"), L"On");
}

TEST(EnumDescriptionLabelTest, TakesTimeLinearInTheDescription) {
    // Entries without comma: a search of the rest for each would take minutes.
    std::wstring description;
    for (int i = 0; i < 200'000; ++i) {
        description.append(L"no;");
    }
    description.append(L"1,On;");
    EXPECT_EQ(EnumLabel(L"1", description), L"On");
    EXPECT_EQ(EnumLabel(L"2", description), L"");
}

/// Entries as "value=text" joined by "|".
std::wstring Entries(std::wstring_view description) {
    std::wstring text;
    for (const EnumEntry& entry : EnumEntries(description)) {
        text.append(text.empty() ? L"" : L"|")
            .append(std::to_wstring(entry.value))
            .append(L"=")
            .append(entry.text);
    }
    return text;
}

TEST(EnumDescriptionEntriesTest, ListsTheEntriesWhetherTheLastIsClosedOrNot) {
    EXPECT_EQ(Entries(L"0,Off;1,On"), L"0=Off|1=On");
    EXPECT_EQ(Entries(L"0,Off;1,On;"), L"0=Off|1=On");
}

TEST(EnumDescriptionEntriesTest, ListsNothingOfAnEmptyDescription) {
    EXPECT_EQ(EnumEntries(L"").size(), 0u);
}

TEST(EnumDescriptionEntriesTest, StopsAtTheFirstEmptyEntry) {
    EXPECT_EQ(Entries(L"0,Off;;1,On;"), L"0=Off");
    EXPECT_EQ(Entries(L";0,Off;"), L"");
}

TEST(EnumDescriptionEntriesTest, ReadsTheValueAsALeadingNumberRoundedToEven) {
    EXPECT_EQ(Entries(L"2.5,a;3.5,b;12x,c;-1,d;word,e;"), L"2=a|4=b|12=c|-1=d|0=e");
}

TEST(EnumDescriptionEntriesTest, EndsTheTextAtASecondComma) {
    EXPECT_EQ(Entries(L"1,On, fast;2;3,;"), L"1=On|2=|3=");
}

TEST(EnumDescriptionEntriesTest, ThrowsForAValuePastSixteenBits) {
    EXPECT_EQ(Entries(L"32767,a;-32768,b;"), L"32767=a|-32768=b");
    EXPECT_EQ(ErrorOf([] { EnumEntries(L"0,Off;32768,a;"); }), kOverflow);
    EXPECT_EQ(ErrorOf([] { EnumEntries(L"-32769,a;"); }), kOverflow);
}

TEST(EnumDescriptionEntriesTest, TakesTimeLinearInTheDescription) {
    std::wstring description;
    for (int i = 0; i < 100'000; ++i) {
        description.append(L"1,x;");
    }
    EXPECT_EQ(EnumEntries(description).size(), 100'000u);
}

TEST(EnumDescriptionFirstValueTest, IsTheFirstEntrysTextBeforeItsComma) {
    EXPECT_EQ(FirstEnumValue(L"2,Two;1,One;"), L"2");
    EXPECT_EQ(FirstEnumValue(L" 2 ,Two"), L" 2 ");
    EXPECT_EQ(FirstEnumValue(L"2;1,One"), L"2") << "an entry without a comma";
    EXPECT_EQ(FirstEnumValue(L",Two;"), L"");
}

TEST(EnumDescriptionFirstValueTest, RefusesATextWithoutAFirstEntry) {
    EXPECT_EQ(ErrorOf([] { FirstEnumValue(L""); }), kSubscript);
    EXPECT_EQ(ErrorOf([] { FirstEnumValue(L";1,One;"); }), kSubscript);
}

} // namespace
} // namespace tam
