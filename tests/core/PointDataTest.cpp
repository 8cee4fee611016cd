#include "core/PointData.h"

#include "tests/core/FieldRules.h"
#include "tests/core/Thrown.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace tam {
namespace {

using Names = std::multiset<std::wstring>;

TEST(PointDataInputTest, StartsAsAMandatoryInvisibleInput) {
    const InputData input;
    EXPECT_TRUE(input.isMandatory);
    EXPECT_FALSE(input.isVisible);
    EXPECT_FALSE(input.isPermanent);
    EXPECT_FALSE(input.isConnected);
    EXPECT_EQ(input.linkReference + input.logicalAddress + input.protocolReference + input.snvtType, L"");
}

TEST(PointDataInputTest, ReadsItsDefinition) {
    EXPECT_EQ(Keywords(kInputDefinition), (Names{L"MANDATORY", L"VISIBLE", L"LOGICALADDRESS", L"ISPERMANENT",
                                                 L"PROTOCOLREFERENCE", L"SNVTTYPE"}));
    InputData input;
    Take(kInputDefinition, L"LOGICALADDRESS", input, L"12");
    Take(kInputDefinition, L"PROTOCOLREFERENCE", input, L"R");
    Take(kInputDefinition, L"SNVTTYPE", input, L"105");
    Take(kInputDefinition, L"ISPERMANENT", input, L"1");
    EXPECT_EQ(input.logicalAddress, L"12");
    EXPECT_EQ(input.protocolReference, L"R");
    EXPECT_EQ(input.snvtType, L"105");
    EXPECT_TRUE(input.isPermanent);
    EXPECT_EQ(input.linkReference, L"");
}

TEST(PointDataInputTest, APresentElementClearsMandatoryAndSetsVisibleWhateverItSays) {
    InputData input;
    Take(kInputDefinition, L"MANDATORY", input, L"1");
    Take(kInputDefinition, L"VISIBLE", input, L"0");
    EXPECT_FALSE(input.isMandatory);
    EXPECT_TRUE(input.isVisible);
}

TEST(PointDataInputTest, LoadsItsTypeAlone) {
    EXPECT_EQ(Keywords(kSavedInput), (Names{L"SNVT_TYPE"}));
    InputData input;
    Take(kSavedInput, L"SNVT_TYPE", input, L"8");
    EXPECT_EQ(input.snvtType, L"8");
}

TEST(PointDataInputTest, IsWrittenForOtherPrograms) {
    const InputData input{L"L", L"12", L"R", L"105", true};
    EXPECT_EQ(Give(kInteroperableInput, input), (Written{{L"Reference", L"R"},
                                                         {L"LogicalAddress", L"12"},
                                                         {L"isPermanent", L"True"},
                                                         {L"SNVTType", L"105"}}));
}

TEST(PointDataInputTest, IsExportedConnectedByItsReference) {
    InputData input{L"AI3_Out", L"12", L"R", L"105", false, false};
    EXPECT_EQ(Give(kExportedInput, input), (Written{{L"LinkReference", L"AI3_Out"},
                                                    {L"LogicalAddress", L"12"},
                                                    {L"SNVTType", L"105"},
                                                    {L"isPermanent", L"0"},
                                                    {L"IsConnected", L"1"}}));
    // What the host has said of the connection does not count here.
    input.isConnected = true;
    input.linkReference = L"0000";
    EXPECT_EQ(Give(kExportedInput, input).back(), (Written::value_type{L"IsConnected", L"0"}));
}

TEST(PointDataOutputTest, StartsWithoutTypeAndNotWritable) {
    const OutputData output;
    EXPECT_FALSE(output.hasType);
    EXPECT_EQ(output.writable, L"False");
    EXPECT_FALSE(output.isConnected || output.isDisplayable || output.isVisible || output.isTypeDependent);
}

TEST(PointDataOutputTest, ReadsItsDefinition) {
    EXPECT_EQ(Keywords(kOutputDefinition), (Names{L"VISIBLE", L"LOGICALADDRESS", L"ISMAPASOO", L"OBJOFFSET",
                                                  L"ABSOLUTEOBJECTINDEX", L"ISWRITABLE"}));
    OutputData output;
    Take(kOutputDefinition, L"VISIBLE", output, L"0");
    Take(kOutputDefinition, L"LOGICALADDRESS", output, L"3");
    Take(kOutputDefinition, L"ISMAPASOO", output, L"True");
    Take(kOutputDefinition, L"OBJOFFSET", output, L"1");
    Take(kOutputDefinition, L"ABSOLUTEOBJECTINDEX", output, L"16");
    Take(kOutputDefinition, L"ISWRITABLE", output, L"");
    EXPECT_TRUE(output.isVisible);
    EXPECT_EQ(output.logicalAddress, L"3");
    EXPECT_EQ(output.mapAsObject, L"True");
    EXPECT_EQ(output.objectOffset, L"1");
    EXPECT_EQ(output.absoluteObjectIndex, L"16");
    EXPECT_EQ(output.writable, L"");
}

TEST(PointDataOutputTest, TheElementsAttributeMakesItTypeDependent) {
    EXPECT_EQ(Keywords(kOutputDefinitionAttributes), (Names{L"TYPEDEPENDENT"}));
    OutputData output;
    Take(kOutputDefinitionAttributes, L"TYPEDEPENDENT", output, L"0");
    EXPECT_TRUE(output.isTypeDependent);
}

TEST(PointDataOutputTest, SavesAndLoads) {
    OutputData output;
    output.snvtType = L"105";
    output.isConnected = true;
    output.exportIndex = L"7";
    EXPECT_EQ(Give(kOutputToSave, output), (Written{{L"SNVT_Type", L"105"},
                                                    {L"IsConnected", L"True"},
                                                    {L"IsDisplayable", L"False"},
                                                    {L"ExportIndex", L"7"}}));
    EXPECT_EQ(Keywords(kSavedOutput), (Names{L"ISCONNECTED", L"ISDISPLAYABLE", L"EXPORTINDEX"}));
    OutputData loaded;
    Take(kSavedOutput, L"ISCONNECTED", loaded, L"True");
    Take(kSavedOutput, L"ISDISPLAYABLE", loaded, L"True");
    Take(kSavedOutput, L"EXPORTINDEX", loaded, L"7");
    EXPECT_TRUE(loaded.isConnected);
    EXPECT_TRUE(loaded.isDisplayable);
    EXPECT_EQ(loaded.exportIndex, L"7");
    EXPECT_EQ(ErrorOf([&] { Take(kSavedOutput, L"ISCONNECTED", loaded, L"x"); }), kTypeMismatch);
    EXPECT_TRUE(loaded.isConnected);
}

TEST(PointDataOutputTest, IsWrittenForOtherPrograms) {
    OutputData output;
    output.snvtType = L"105";
    output.logicalAddress = L"3";
    EXPECT_EQ(Give(kInteroperableOutput, output),
              (Written{{L"SNVT_Type", L"105"}, {L"LogicalAddress", L"3"}}));
}

TEST(PointDataOutputTest, IsExportedWithFlagsAsOneOrZero) {
    OutputData output;
    output.logicalAddress = L"3";
    output.snvtType = L"105";
    output.mapAsObject = L"True";
    output.objectOffset = L"1";
    output.absoluteObjectIndex = L"16";
    EXPECT_EQ(Give(kExportedOutput, ExportedOutput{output, true}), (Written{{L"LogicalAddress", L"3"},
                                                                            {L"SNVTType", L"105"},
                                                                            {L"isMapAsOO", L"1"},
                                                                            {L"ObjOffset", L"1"},
                                                                            {L"AbsoluteObjectIndex", L"16"},
                                                                            {L"IsConnected", L"1"},
                                                                            {L"IsWritable", L"0"}}));
}

TEST(PointDataAttributeTest, ReadsItsDefinition) {
    EXPECT_EQ(Keywords(kAttributeDefinition),
              (Names{L"DESCRIPTION", L"VISIBLE", L"LOGICALADDRESS", L"ISPERMANENT", L"VALUE"}));
    AttributeData attribute;
    EXPECT_EQ(attribute.isPermanent, L"1");
    Take(kAttributeDefinition, L"DESCRIPTION", attribute, L"d");
    Take(kAttributeDefinition, L"VISIBLE", attribute, L"0");
    Take(kAttributeDefinition, L"LOGICALADDRESS", attribute, L"4");
    Take(kAttributeDefinition, L"ISPERMANENT", attribute, L"False");
    Take(kAttributeDefinition, L"VALUE", attribute, L" 1.5");
    EXPECT_EQ(attribute.description, L"d");
    EXPECT_TRUE(attribute.isVisible);
    EXPECT_EQ(attribute.logicalAddress, L"4");
    EXPECT_EQ(attribute.isPermanent, L"False");
    EXPECT_EQ(attribute.value, L" 1.5");
    EXPECT_EQ(attribute.defaultValue, L"");
}

TEST(PointDataAttributeTest, IsExportedWithItsType) {
    AttributeData attribute;
    attribute.logicalAddress = L"4";
    attribute.value = L"21.5";
    attribute.isPermanent = L"False";
    EXPECT_EQ(Give(kExportedAttribute, ExportedAttribute{attribute, L"105", true}),
              (Written{{L"LogicalAddress", L"4"},
                       {L"SNVTType", L"105"},
                       {L"Value", L"21.5"},
                       {L"isPermanent", L"0"},
                       {L"IsConnected", L"1"}}));
}

} // namespace
} // namespace tam
