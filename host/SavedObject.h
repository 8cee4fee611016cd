#pragma once

#include "com/Dom.h"

#include <optional>
#include <string>
#include <vector>

namespace orv {

/// What a document says of one point; what it does not say is not there.
struct SavedPoint {
    std::wstring name;
    std::optional<bool> visible;
    std::optional<bool> displayable;
    std::optional<std::wstring> value;
    /// Identifier of the type.
    std::optional<std::wstring> type;
    std::optional<std::wstring> enumDesc;
};

/// The element of a generic object in a document:
///
///   <O_Tam_AI_id>
///     <UserName>..</UserName> <X_Position>..</X_Position> <Y_Position>..</Y_Position> <Key>..</Key>
///     <Inputs><In1 Visible="1" Value=".."/></Inputs>
///     <Outputs><Out Visible="1" IsDisplayable="0"/></Outputs>
///     <Attributes><Gain Visible="1" Value=".." SNVT_Type="81" EnumDesc=".."/></Attributes>
///   </O_Tam_AI_id>
///
/// Only what is there is written. Values are attributes, for blanks alone would
/// not survive as an element's text. Numbers have "." whatever the locale.
struct SavedObject {
    std::optional<std::wstring> userName;
    std::optional<double> x;
    std::optional<double> y;
    std::optional<std::wstring> key;
    std::vector<SavedPoint> inputs;
    std::vector<SavedPoint> outputs;
    std::vector<SavedPoint> attributes;
};

/// Appends the element to a node, whole or, on a failure, not at all.
void WriteSaved(const SavedObject& object, const std::wstring& name, const tam::dom::Node& parent,
                const tam::dom::Document& document);

/// Names of elements count in whichever letter case; what is not known is passed over.
SavedObject ReadSaved(const tam::dom::Node& element);

} // namespace orv
