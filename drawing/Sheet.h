#pragma once

#include <compare>
#include <cstddef>
#include <string>
#include <vector>

namespace drawing {

// What is to be drawn, in words. All texts are UTF-8.

enum class Side { Input, Output };

/// A point of a block.
struct Pin {
    std::string name = {};
    /// Its network variable type, as a reader is to see it: "105 temp_p".
    std::string type = {};
    std::string address = {};
    bool isWired = false;
    /// What it is wired to; may be empty for a wired pin.
    std::string wiredTo = {};
    bool isHidden = false;
};

struct Block {
    std::string name = {};
    /// A line below the name: category, identifier.
    std::string subtitle = {};
    bool hasIcon = false;
    std::vector<Pin> inputs = {};
    std::vector<Pin> outputs = {};
};

/// A pin of a sheet: block 0 is the module, block n its channel n - 1.
struct PinId {
    std::size_t block = 0;
    Side side = Side::Input;
    std::size_t index = 0;
    auto operator<=>(const PinId&) const = default;
};

/// A point of a channel and the module's item that has the same value.
struct Mirror {
    PinId module;
    PinId channel;
};

/// A module with the channels that stand beside it.
struct Sheet {
    Block module;
    std::vector<Block> channels;
    std::vector<Mirror> mirrors;
};

/// The pin of an identifier; null when the sheet has none.
const Pin* Find(const Sheet& sheet, const PinId& id) noexcept;

} // namespace drawing
