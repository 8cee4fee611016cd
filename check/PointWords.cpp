#include "check/Points.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace check {

namespace {

constexpr std::string_view kInputKeywords[] = {
    "MANDATORY",         "VISIBLE", "LOGICALADDRESS", "ISPERMANENT", "SNVTCOMPATIBILITYLIST",
    "PROTOCOLREFERENCE", "SNVTTYPE"};
constexpr std::string_view kOutputKeywords[] = {
    "VISIBLE", "SNVTTYPE", "LOGICALADDRESS", "ISMAPASOO", "OBJOFFSET", "ABSOLUTEOBJECTINDEX", "ISWRITABLE"};
constexpr std::string_view kAttributeKeywords[] = {"DESCRIPTION",    "VISIBLE",     "SNVTTYPE",
                                                   "LOGICALADDRESS", "ISPERMANENT", "VALUE"};
// Those of the other two kinds, and what stands above the points.
constexpr std::string_view kNotOfInputs[] = {"ISMAPASOO",   "OBJOFFSET",  "ABSOLUTEOBJECTINDEX", "ISWRITABLE",
                                             "DESCRIPTION", "VALUE",      "DEFAULTVALUE",        "DEVKEY",
                                             "TAMOBJID",    "ISLASTONDEV"};
constexpr std::string_view kNotOfOutputs[] = {"MANDATORY",         "ISPERMANENT", "SNVTCOMPATIBILITYLIST",
                                              "PROTOCOLREFERENCE", "DESCRIPTION", "VALUE",
                                              "DEFAULTVALUE",      "DEVKEY",      "TAMOBJID",
                                              "ISLASTONDEV"};
constexpr std::string_view kNotOfAttributes[] = {"MANDATORY",
                                                 "SNVTCOMPATIBILITYLIST",
                                                 "PROTOCOLREFERENCE",
                                                 "ISMAPASOO",
                                                 "OBJOFFSET",
                                                 "ABSOLUTEOBJECTINDEX",
                                                 "ISWRITABLE",
                                                 "DEFAULTVALUE",
                                                 "DEVKEY",
                                                 "TAMOBJID",
                                                 "ISLASTONDEV"};
constexpr std::string_view kOutputAttributes[] = {"TypeDependent"};

// Hosts read more of a channel's points than a module does.
constexpr std::string_view kChannelInput[] = {
    "NAME",  "MANDATORY",   "VISIBLE",           "EXTENDED",       "SNVTCOMPATIBILITYLIST", "SNVTTYPE",
    "VALUE", "CDBPOSITION", "PROTOCOLREFERENCE", "LOGICALADDRESS", "ISPERMANENT",           "DESCRIPTION"};
constexpr std::string_view kChannelOutput[] = {"NAME",          "VISIBLE",        "SNVTTYPE",
                                               "TYPEDEPENDENT", "ISWRITABLE",     "ISTRENDABLE",
                                               "DESCRIPTION",   "LOGICALADDRESS", "CDBPOSITION"};
constexpr std::string_view kChannelAttribute[] = {
    "NAME",   "DESCRIPTION",   "VISIBLE",      "SNVTTYPE",          "VALUE",       "DEFAULTVALUE",  "MIN",
    "MAX",    "UNITDEPENDENT", "DIFFERENTIAL", "DEVICEDEPENDENT",   "DEVICEKEY",   "TOOLONLY",      "ISUNIT",
    "ISTYPE", "DIVIDEDBY",     "CDBPOSITION",  "KEEPFLOATSTANDARD", "ISPERMANENT", "LOGICALADDRESS"};

constexpr std::array<PointWords, 3> kStreamWords = {
    {{PointKind::Input, "an input", kInputKeywords, kNotOfInputs, {}},
     {PointKind::Output, "an output", kOutputKeywords, kNotOfOutputs, kOutputAttributes},
     {PointKind::Attribute, "an attribute", kAttributeKeywords, kNotOfAttributes, {}}}};
constexpr std::array<PointWords, 3> kChannelWords = {
    {{PointKind::Input, "an input", kChannelInput, {}, {}},
     {PointKind::Output, "an output", kChannelOutput, {}, kOutputAttributes},
     {PointKind::Attribute, "an attribute", kChannelAttribute, {}, {}}}};

} // namespace

const PointWords& StreamWords(PointKind kind) {
    return kStreamWords.at(static_cast<std::size_t>(kind));
}
const PointWords& ChannelWords(PointKind kind) {
    return kChannelWords.at(static_cast<std::size_t>(kind));
}

} // namespace check
