#include "tests/fuzz/Texts.h"

#include <vector>

namespace component_fuzz {

namespace {

constexpr std::size_t kMegabyte = 1 << 20;

const std::vector<std::wstring>& Texts() {
    static const std::vector<std::wstring> texts = {L"",
                                                    L" ",
                                                    L"\t\r\n",
                                                    L"0",
                                                    L"1",
                                                    L"-1",
                                                    L"-0",
                                                    L"00000000000000000000",
                                                    L"127",
                                                    L"128",
                                                    L"255",
                                                    L"255.5",
                                                    L"256",
                                                    L"32767",
                                                    L"32767.5",
                                                    L"32768",
                                                    L"-32768",
                                                    L"-32769",
                                                    L"65535",
                                                    L"65536",
                                                    L"2147483647",
                                                    L"2147483647.5",
                                                    L"2147483648",
                                                    L"-2147483648",
                                                    L"-2147483649",
                                                    L"4294967295",
                                                    L"4294967296",
                                                    L"9223372036854775808",
                                                    L"1e308",
                                                    L"1.7976931348623158e308",
                                                    L"1e309",
                                                    L"1e999",
                                                    L"-1e999",
                                                    L"1e-999",
                                                    L"1d5",
                                                    L"1e",
                                                    L"1e+",
                                                    L".",
                                                    L",",
                                                    L"-.",
                                                    L"NaN",
                                                    L"nan(1)",
                                                    L"inf",
                                                    L"-INF",
                                                    L"1.#INF",
                                                    L"&HFFFF",
                                                    L"&H10000",
                                                    L"&H80000000",
                                                    L"&HFFFFFFFFF",
                                                    L"&O17",
                                                    L"0x10",
                                                    L"1,5",
                                                    L"1.5",
                                                    L"1.234,5",
                                                    L"1,234.5",
                                                    L"1'000",
                                                    L"1 000",
                                                    L"1\u00A0000",
                                                    L"\u0661\u0662",
                                                    L"\uFF11",
                                                    L"$5",
                                                    L"5%",
                                                    L"(5)",
                                                    L"1-",
                                                    L"+1",
                                                    L"--1",
                                                    L"true",
                                                    L"True",
                                                    L"-1.0",
                                                    L"1 ",
                                                    L" 1",
                                                    L"1.0",
                                                    L"105",
                                                    L"36",
                                                    L"95",
                                                    L"81",
                                                    L"999999",
                                                    L"105,95,,36",
                                                    L",105",
                                                    L"105;95",
                                                    L"0,Off;1,On;",
                                                    L"1,",
                                                    L";;;",
                                                    L"0000",
                                                    L"000000",
                                                    L"DI1_Out",
                                                    L"in1",
                                                    L"Gain",
                                                    L"#TRUE#",
                                                    L"False",
                                                    L"_",
                                                    L"CONFIG",
                                                    L"NoTextField",
                                                    L"'",
                                                    L"\"",
                                                    L"]]>",
                                                    L"<a>",
                                                    L"&amp;",
                                                    L"105' or '1'='1",
                                                    L"105 | //*",
                                                    L"105/..",
                                                    L"//*",
                                                    L"..",
                                                    L"*",
                                                    L"name()",
                                                    L"@x",
                                                    L"a:b",
                                                    L"\\",
                                                    L"..\\..\\x",
                                                    L"C:\\x",
                                                    L"%s%n",
                                                    L"\xD800",
                                                    L"\xDC00x",
                                                    L"\xD83D\xDE00",
                                                    L"\xFFFE",
                                                    L"\xFFFF",
                                                    L"e\u0301",
                                                    L"\u0130i\u0131I",
                                                    L"\u00DF",
                                                    L"\x01",
                                                    L"\x1B"};
    return texts;
}

const std::vector<std::wstring>& Names() {
    static const std::vector<std::wstring> names = {L"Tam",
                                                    L"Name",
                                                    L"NAME",
                                                    L"name",
                                                    L"ID",
                                                    L"AppObject",
                                                    L"DataSizes",
                                                    L"T0",
                                                    L"T5",
                                                    L"T6",
                                                    L"T255",
                                                    L"T256",
                                                    L"T-1",
                                                    L"T",
                                                    L"Tam.1",
                                                    L"DevKey",
                                                    L"TamObjID",
                                                    L"IsLastOnDev",
                                                    L"CDB",
                                                    L"DDB",
                                                    L"InReferences",
                                                    L"OutReferences",
                                                    L"Attributes",
                                                    L"Outputs",
                                                    L"UserName",
                                                    L"X_Position",
                                                    L"VISIBLE",
                                                    L"SNVTTYPE",
                                                    L"Value",
                                                    L"LOGICALADDRESS",
                                                    L"SNVTCOMPATIBILITYLIST",
                                                    L"Length",
                                                    L"Type",
                                                    L"SNVT_105",
                                                    L"SNVT_",
                                                    L"AI1_Value",
                                                    L"ai1_value",
                                                    L"_",
                                                    L"__",
                                                    L"_1",
                                                    L"A.b-c",
                                                    L"\u00C9l\u00E9ment",
                                                    L"\u0416",
                                                    L"xml",
                                                    L"x:y",
                                                    L"text",
                                                    L"node",
                                                    L"comment",
                                                    L"IsDisplayable",
                                                    L"IsConnected",
                                                    L"Inputs",
                                                    L"SNVT_TYPE",
                                                    L"TAMConfig",
                                                    L"InReference",
                                                    L"OutReference",
                                                    L"Attrib",
                                                    L"Visible",
                                                    L"UnitDependent",
                                                    L"Library",
                                                    L"O_Tam_id",
                                                    L"o_tam_ID",
                                                    L"V12",
                                                    L"TYPEDEPENDENT",
                                                    L"Factor",
                                                    L"CDB_Size"};
    return names;
}

/// Names that are no names in XML.
const std::vector<std::wstring>& BadNames() {
    static const std::vector<std::wstring> names = {
        L"",  L" ",   L"1a",   L"a b", L"a/b", L"//*", L"*",     L"..",     L"@a",     L"a[1]",  L"a|b",
        L"<", L"a>b", L"a\"b", L"&",   L"-",   L":",   L"a:b:c", L"\xD800", L"\xFFFF", L"text()"};
    return names;
}

} // namespace

std::wstring Repeated(std::wstring_view part, std::size_t times) {
    std::wstring text;
    text.reserve(part.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        text += part;
    }
    return text;
}

std::wstring AnyText(Random& random) {
    if (random.OneIn(60)) {
        const std::vector<std::wstring> parts = {L"A", L"9", L" ", L",", L"1;", L"\u20AC"};
        const std::wstring& part = random.Of(parts);
        return Repeated(part, kMegabyte / part.size());
    }
    if (random.OneIn(40)) {
        return Repeated(L"105,81,", 300);
    }
    std::wstring text = random.Of(Texts());
    if (random.OneIn(20)) {
        text.insert(random.Below(text.size() + 1), 1, L'\0');
    }
    return text;
}

std::wstring AnyName(Random& random) {
    return random.OneIn(6) ? random.Of(BadNames()) : random.Of(Names());
}

} // namespace component_fuzz
