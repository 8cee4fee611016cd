#include "performance/Material.h"

#include <algorithm>
#include <cstddef>
#include <functional>

namespace benchmark {

namespace {

constexpr long kTypes = 221;
constexpr long kKinds = 3;
constexpr long kInput = 0;
constexpr long kAttribute = 2;

std::wstring PointText(long number, bool isInput) {
    const std::wstring name = PointName(number);
    const std::wstring type = std::to_wstring(1 + number % kTypes);
    return L"<" + name + L"><SNVTTYPE>" + type + L"</SNVTTYPE><LOGICALADDRESS>" + std::to_wstring(number) +
           L"</LOGICALADDRESS><ISPERMANENT>1</ISPERMANENT><VISIBLE/>" +
           (isInput ? L"<SNVTCOMPATIBILITYLIST>" + type + L"</SNVTCOMPATIBILITYLIST>"
                    : std::wstring(L"<VALUE>1.5</VALUE>")) +
           L"</" + name + L">";
}

std::wstring Stream(long points, const std::function<long(long)>& kindOf) {
    std::wstring sections[kKinds];
    for (long i = 0; i < points; ++i) {
        const long kind = kindOf(i);
        sections[kind] += PointText(i, kind == kInput);
    }
    return L"<Tam><Name>Bench</Name><DevKey>K</DevKey><IsLastOnDev>1</IsLastOnDev><TamObjID>1</TamObjID>"
           L"<InReferences>" +
           sections[0] + L"</InReferences><OutReferences>" + sections[1] + L"</OutReferences><Attributes>" +
           sections[2] + L"</Attributes></Tam>";
}

} // namespace

std::wstring SixDigits(long number) {
    const std::wstring digits = std::to_wstring(number);
    return std::wstring(6 - std::min<std::size_t>(6, digits.size()), L'0') + digits;
}

std::wstring PointName(long number) {
    return L"P" + SixDigits(number) + L"_V";
}

std::wstring CatalogueText() {
    std::wstring entries;
    for (long i = 1; i <= kTypes; ++i) {
        const std::wstring id = std::to_wstring(i);
        entries += L"<SNVT_" + id + L" Factor=\"1\" Z3Region=\"0\"><Name>SNVT_" + id +
                   L"</Name><Type>SignedNumeric</Type><Unit>u</Unit><Min>-10</Min><Max>10</Max>"
                   L"<Length>2</Length><A_Coef>1</A_Coef><B_Coef>0</B_Coef><C_Coef>0</C_Coef></SNVT_" +
                   id + L">";
    }
    return L"<Catalogue>" + entries + L"</Catalogue>";
}

std::wstring DefinitionText(long points) {
    std::wstring attributes;
    for (long i = kAttribute; i < points; i += kKinds) {
        const std::wstring name = PointName(i);
        attributes += L"<" + name + L"><DefaultValue>1.5</DefaultValue></" + name + L">";
    }
    return L"<Tam><AppObject><NAME>Bench</NAME><ID>1</ID><DESCRIPTION>d</DESCRIPTION>"
           L"<CATEGORY>c</CATEGORY></AppObject><Attributes>" +
           attributes + L"</Attributes></Tam>";
}

std::wstring StreamText(long points) {
    return Stream(points, [](long number) { return number % kKinds; });
}

std::wstring InputStreamText(long points) {
    return Stream(points, [](long) { return kInput; });
}

} // namespace benchmark
