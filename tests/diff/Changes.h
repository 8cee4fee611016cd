#pragma once

#include "check/Check.h"
#include "diff/Compare.h"
#include "diff/Model.h"
#include "diff/Text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace difftest {

inline const check::Catalogue& Types() {
    static const check::Catalogue types = check::ReadCatalogue(
        "<SNVTCatalogue>"
        "<SNVT_36><Name>SNVT_str_asc</Name><Type>Textual</Type><Length>31</Length></SNVT_36>"
        "<SNVT_81><Name>SNVT_lev_percent</Name><Type>SignedNumeric</Type><Unit>%</Unit><Min>-163.84</"
        "Min><Max>163.83"
        "</Max><Length>2</Length><A_Coef>5</A_Coef><B_Coef>-3</B_Coef><C_Coef>0</C_Coef></SNVT_81>"
        "<SNVT_95><Name>SNVT_switch</Name><Type>Struct</Type><Length>2</Length></SNVT_95>"
        "<SNVT_147><Name>SNVT_temp_diff_p</Name><Type>SignedNumeric</Type><Unit>degrees "
        "C</Unit><Min>-327.68</Min>"
        "<Max>327.66</Max><Length>2</Length><A_Coef>1</A_Coef><B_Coef>-2</B_Coef><C_Coef>0</C_Coef></"
        "SNVT_147>"
        "<SNVT_162><Name>SNVT_dev_c_mode</Name><Type>Enum</Type><Length>1</"
        "Length><EnumDesc>1,DCM_PRESS_CONST;21,"
        "DCM_LINEAR;</EnumDesc></SNVT_162></SNVTCatalogue>");
    return types;
}

inline diff::Model ModelOf(const std::string& text) {
    diff::Reading reading = diff::Read(text, Types());
    for (const diff::Fault& fault : reading.faults) {
        ADD_FAILURE() << fault.line << ":" << fault.column << ": " << fault.message << "\n" << text;
    }
    return reading.model;
}

/// Each change as "what noun name field: before -> after", with what it does not have left out.
inline std::vector<std::string> Changes(const std::string& before, const std::string& after) {
    std::vector<std::string> texts;
    for (const diff::Change& change : diff::Compare(ModelOf(before), ModelOf(after))) {
        std::string text(diff::WordOf(change.what));
        for (const std::string& part : {change.noun, change.name, change.field}) {
            text += part.empty() ? "" : " " + part;
        }
        texts.push_back(text + ": " + change.before + " -> " + change.after);
    }
    return texts;
}

using Texts = std::vector<std::string>;

/// A stream with these sections.
inline std::string Stream(const std::string& sections) {
    return "<Tam><Name>Reading "
           "room</Name><DevKey>K7</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>1</TamObjID>" +
           sections + "</Tam>";
}

inline std::string Inputs(const std::string& points) {
    return Stream("<InReferences>" + points + "</InReferences>");
}

inline std::string Attributes(const std::string& points) {
    return Stream("<Attributes>" + points + "</Attributes>");
}

/// An attribute with a type, an address and a value.
inline std::string Attribute(const std::string& name, const std::string& type, const std::string& address,
                             const std::string& value) {
    return "<" + name + "><SNVTTYPE>" + type + "</SNVTTYPE><LOGICALADDRESS>" + address +
           "</LOGICALADDRESS><VALUE>" + value + "</VALUE></" + name + ">";
}

} // namespace difftest
