#include "core/ModuleData.h"

#include "tests/core/FieldRules.h"
#include "tests/core/Thrown.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace tam {
namespace {

using Names = std::multiset<std::wstring>;

const StreamField& Header(const std::wstring& path) {
    for (const StreamField& field : kStreamHeader) {
        if (field.path == path) {
            return field;
        }
    }
    throw RunTimeError(RunTime::Subscript);
}

TEST(ModuleDataTest, StartsEmptyOnNoChannel) {
    const ModuleData module;
    EXPECT_EQ(module.device.channelNumber, 255);
    EXPECT_EQ(module.placement.objectId, 0);
    EXPECT_FALSE(module.datasheet.isAvailable);
    EXPECT_FALSE(module.device.isLastOnDevice);
}

TEST(ModuleDataTest, ReadsItsIdentityFromTheDefinition) {
    EXPECT_EQ(Keywords(kModuleDefinition), (Names{L"NAME", L"ID", L"DESCRIPTION", L"CATEGORY"}));
    ModuleIdentity identity;
    Take(kModuleDefinition, L"NAME", identity, L"Valve");
    Take(kModuleDefinition, L"ID", identity, L"7");
    Take(kModuleDefinition, L"DESCRIPTION", identity, L"d");
    Take(kModuleDefinition, L"CATEGORY", identity, L"c");
    EXPECT_EQ(identity.name, L"Valve");
    EXPECT_EQ(identity.id, L"7");
    EXPECT_EQ(identity.description, L"d");
    EXPECT_EQ(identity.category, L"c");
    EXPECT_EQ(identity.definitionName, L"");
}

TEST(ModuleDataTest, SavesItsPlacementWithTheUsersDecimalMark) {
    EXPECT_EQ(Give(kProjectToSave, ModulePlacement{L"Valve", 12.5, 0.5, L"D", -2}),
              (Written{{L"UserName", L"Valve"},
                       {L"X_Position", L"12,5"},
                       {L"Y_Position", L"0,5"},
                       {L"DevKey", L"D"},
                       {L"TamObjID", L"-2"}}));
}

TEST(ModuleDataTest, LoadsItsPlacementWithAPointAlone) {
    EXPECT_EQ(Keywords(kSavedProject),
              (Names{L"USERNAME", L"X_POSITION", L"Y_POSITION", L"DEVKEY", L"TAMOBJID"}));
    ModulePlacement placement;
    Take(kSavedProject, L"USERNAME", placement, L"Valve");
    Take(kSavedProject, L"X_POSITION", placement, L"12,5");
    Take(kSavedProject, L"Y_POSITION", placement, L"0.5");
    Take(kSavedProject, L"DEVKEY", placement, L"D");
    Take(kSavedProject, L"TAMOBJID", placement, L"2.5");
    EXPECT_EQ(placement.userName, L"Valve");
    EXPECT_EQ(placement.xPosition, 12.0);
    EXPECT_EQ(placement.yPosition, 0.5);
    EXPECT_EQ(placement.deviceKey, L"D");
    EXPECT_EQ(placement.objectId, 2);
    EXPECT_EQ(ErrorOf([&] { Take(kSavedProject, L"TAMOBJID", placement, L"40000"); }), kOverflow);
    EXPECT_EQ(placement.objectId, 2);
}

TEST(ModuleDataTest, AStreamsHeaderIsReadInItsOrder) {
    std::vector<std::wstring> paths;
    std::vector<std::wstring> required;
    for (const StreamField& field : kStreamHeader) {
        paths.emplace_back(field.path);
        if (field.isRequired) {
            required.emplace_back(field.path);
        }
    }
    EXPECT_EQ(paths, (std::vector<std::wstring>{L"Tam/Name", L"Tam/DevKey", L"Tam/IsLastOnDev",
                                                L"Tam/TamObjID", L"Tam/CDB", L"Tam/DDB"}));
    EXPECT_EQ(required,
              (std::vector<std::wstring>{L"Tam/Name", L"Tam/DevKey", L"Tam/IsLastOnDev", L"Tam/TamObjID"}));
}

TEST(ModuleDataTest, AStreamsNameIsTheUserNameToo) {
    ModuleData module;
    module.placement.userName = L"old";
    Header(L"Tam/Name").take(module, L"Valve");
    EXPECT_EQ(module.identity.name, L"Valve");
    EXPECT_EQ(module.placement.userName, L"Valve");
}

TEST(ModuleDataTest, AStreamsDeviceKeyIsNotTheProjects) {
    ModuleData module;
    module.placement.deviceKey = L"project";
    Header(L"Tam/DevKey").take(module, L"stream");
    EXPECT_EQ(module.device.streamKey, L"stream");
    EXPECT_EQ(module.placement.deviceKey, L"project");
}

TEST(ModuleDataTest, LastOnItsDeviceIsExactlyTheNumberOne) {
    ModuleData module;
    for (const wchar_t* text : {L"1", L"1.0", L"1 x"}) {
        module.device.isLastOnDevice = false;
        Header(L"Tam/IsLastOnDev").take(module, text);
        EXPECT_TRUE(module.device.isLastOnDevice) << std::wstring(text);
    }
    for (const wchar_t* text : {L"2", L"True", L"", L"1.5", L"0"}) {
        module.device.isLastOnDevice = true;
        Header(L"Tam/IsLastOnDev").take(module, text);
        EXPECT_FALSE(module.device.isLastOnDevice) << std::wstring(text);
    }
}

TEST(ModuleDataTest, AStreamsNumbersAreRounded) {
    ModuleData module;
    Header(L"Tam/TamObjID").take(module, L"2.5");
    Header(L"Tam/CDB").take(module, L"70000");
    Header(L"Tam/DDB").take(module, L"3.5");
    EXPECT_EQ(module.placement.objectId, 2);
    EXPECT_EQ(module.device.cdbDimension, 70000);
    EXPECT_EQ(module.device.ddbDimension, 4);
    EXPECT_EQ(ErrorOf([&] { Header(L"Tam/TamObjID").take(module, L"70000"); }), kOverflow);
    EXPECT_EQ(module.placement.objectId, 2);
}

TEST(ModuleDataTest, IsWrittenForOtherProgramsAndExported) {
    ModuleData module;
    module.placement.userName = L"Valve";
    module.placement.objectId = 3;
    module.placement.deviceKey = L"project";
    module.notes.extendedKey = L"E";
    module.device.address = L"7";
    module.device.applicationId = L"App";
    module.device.streamKey = L"K7";
    module.device.isLastOnDevice = true;
    EXPECT_EQ(Give(kInteroperableModule, module), (Written{{L"UserName", L"Valve"}, {L"Key", L"E"}}));
    EXPECT_EQ(Give(kExportedModule, module), (Written{{L"DevAddr", L"7"},
                                                      {L"AppID", L"App"},
                                                      {L"DevKey", L"K7"},
                                                      {L"TamObjectID", L"3"},
                                                      {L"IsLastOnDev", L"1"}}));
}

} // namespace
} // namespace tam
