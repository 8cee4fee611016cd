#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace check {

struct EnumLabel {
    std::string value;
    std::string label;
};

/// The entries of "value,label;value,label;", with what is not of that form left out.
std::vector<EnumLabel> ReadLabels(std::string_view description);
/// Why a description is not of that form; empty when it is.
std::string FaultOfDescription(std::string_view description);

/// What a catalogue says of a type.
struct TypeInfo {
    std::string name;
    /// The general type; empty when the catalogue does not say it.
    std::string general;
    std::string unit;
    std::string minText;
    std::string maxText;
    std::string invalidText;
    std::optional<double> min;
    std::optional<double> max;
    std::optional<double> invalid;
    long length = 0;
    long a = 1;
    long b = 0;
    std::vector<EnumLabel> labels;
    bool hasLabels = false;
    /// The catalogue itself has errors here.
    bool isFaulty = false;

    bool IsNumber() const {
        return general == "Float" || general == "SignedNumeric" || general == "UnsignedNumeric";
    }
    bool HasScale() const { return general == "SignedNumeric" || general == "UnsignedNumeric"; }
};

class Catalogue {
  public:
    /// False when the identifier is there already.
    bool Add(std::string id, TypeInfo info);
    const TypeInfo* Find(std::string_view id) const;
    /// Whether a type is called so.
    bool HasName(std::string_view name) const;
    std::vector<std::string> Identifiers() const;
    bool IsEmpty() const noexcept { return types_.empty(); }
    /// The identifier that was probably meant by a text that is none; empty when
    /// nothing is near.
    std::string Suggest(std::string_view text) const;

  private:
    std::unordered_map<std::string, TypeInfo> types_;
    std::unordered_map<std::string, std::string> idOfName_;
};

/// Types that are still known and that new devices no longer use.
bool IsRetired(std::string_view id, const TypeInfo& info);

} // namespace check
