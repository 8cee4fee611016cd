#include "tests/types/Types.h"

#include <ostream>

namespace types {

using namespace support;

std::wstring Entry(const std::wstring& id, const std::wstring& children, const std::wstring& attributes) {
    return L"<SNVT_" + id + L" " + attributes + L">" + children + L"</SNVT_" + id + L">";
}

Answers AnswersOf(const Type& type) {
    Answers answers;
    answers.id = Text(type, &ISNVType::get_ID);
    answers.z3Region = Long(type, &ISNVType::get_Z3Region);
    answers.factor = Long(type, &ISNVType::get_Factor);
    answers.aCoef = Long(type, &ISNVType::get_ACoef);
    answers.bCoef = Long(type, &ISNVType::get_BCoef);
    answers.cCoef = Long(type, &ISNVType::get_CCoef);
    answers.genType = Text(type, &ISNVType::get_GenType);
    answers.luiType = Text(type, &ISNVType::get_LUIType);
    answers.invalidValue = Text(type, &ISNVType::get_InvalidValue);
    answers.name = Text(type, &ISNVType::get_Name);
    answers.min = Text(type, &ISNVType::get_Min);
    answers.max = Text(type, &ISNVType::get_Max);
    answers.units = Text(type, &ISNVType::get_Units);
    answers.bacnetUnits = Text(type, &ISNVType::get_BACnetUnits);
    answers.enumDesc = Text(type, &ISNVType::get_EnumDesc);
    answers.length = Long(type, &ISNVType::get_Length);
    answers.hasField = Flag(type, &ISNVType::get_HasField);
    const auto enumeration = type.As<IEnumType>();
    EXPECT_TRUE(enumeration);
    answers.isEnumType = Flag(enumeration, &IEnumType::get_IsEnumType);
    EXPECT_EQ(Text(enumeration, &IEnumType::get_EnumDesc), answers.enumDesc);
    return answers;
}

void PrintTo(const Answers& answers, std::ostream* out) {
    const auto text = [&](const char* name, const std::wstring& value) {
        *out << name << "=" << testing::PrintToString(value) << " ";
    };
    text("ID", answers.id);
    text("GenType", answers.genType);
    text("LUIType", answers.luiType);
    text("InvalidValue", answers.invalidValue);
    text("Name", answers.name);
    text("Min", answers.min);
    text("Max", answers.max);
    text("Units", answers.units);
    text("BACnetUnits", answers.bacnetUnits);
    text("EnumDesc", answers.enumDesc);
    *out << "Z3Region=" << answers.z3Region << " Factor=" << answers.factor << " A=" << answers.aCoef
         << " B=" << answers.bCoef << " C=" << answers.cCoef << " Length=" << answers.length
         << " HasField=" << answers.hasField << " IsEnumType=" << answers.isEnumType;
}

void TypesTest::TearDown() {
    module.Reset();
    ComponentTest::TearDown();
}

Type TypesTest::Assigned(const std::wstring& id, const CalledFrom&) {
    module = Loaded(Stream({}, L"<Out1><SNVTTYPE>" + id + L"</SNVTTYPE></Out1>"));
    return Object(Item(Object(module, &IAppObject::get_Outputs), &IOutputs::get_Item, L"Out1"),
                  &IOutput::get_SNVTType);
}

Type TypesTest::FromEntry(const std::wstring& children, const std::wstring& attributes, const CalledFrom&) {
    SetCatalogue(Entry(L"1", children, attributes));
    return Assigned(L"1");
}

com::Ref<IAttribute> TypesTest::Untyped(const CalledFrom&) {
    module = NewModule();
    const com::Bstr stream(Stream({}, {}, L"<Gain/>"));
    EXPECT_EQ(module.As<ITamObject>()->LoadFromXmlStream(stream.Get()), kObjectNotSet);
    auto gain = Item(Object(module, &IAppObject::get_Attributes), &IAttributes::get_Item, L"Gain");
    EXPECT_TRUE(gain);
    return gain;
}

Type TypesTest::Assign(const com::Ref<IAttribute>& attribute, const std::wstring& id, const CalledFrom&) {
    // A CDATA section keeps the blanks that a text may lose.
    const Document saved = Parse(L"<Gain><SNVT_TYPE><![CDATA[" + id + L"]]></SNVT_TYPE></Gain>");
    EXPECT_EQ(attribute.As<_CDBAttribute>()->XmlLoad(Root(saved).Get()), S_OK);
    return Object(attribute, &IAttribute::get_SNVTType);
}

void TypesTest::ExpectNoBox(const CalledFrom&) {
    EXPECT_TRUE(Boxes().empty());
}

void TypesTest::ExpectMessage(const std::wstring& text, const std::wstring& caption, UINT icon,
                              const CalledFrom&) {
    ExpectOnlyBox(Boxes(), text, caption, icon);
}

void TypesTest::ExpectAssignmentReport(const std::wstring& description, const std::wstring& id,
                                       const CalledFrom&) {
    ExpectOnlyReport(Boxes(), description, L"CSNVTType", L"ID [Property Let]  -  ID = '" + id + L"'");
}

} // namespace types
