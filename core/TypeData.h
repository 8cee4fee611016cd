#pragma once

#include "core/ElementFields.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

namespace tam {

/// What a network variable type says of itself.
struct TypeData {
    std::wstring id;
    std::wstring name;
    std::wstring generalType;
    std::wstring luiType;
    /// Set by the type's owner; no catalogue has it.
    std::wstring enumDescription;
    std::wstring invalidValue;
    // In the form of the user who was there when they were read.
    std::wstring min;
    std::wstring max;
    std::wstring units;
    std::wstring bacnetUnits;
    std::int32_t aCoef = 0;
    std::int32_t bCoef = 0;
    std::int32_t cCoef = 0;
    std::int32_t length = 0;
    std::int32_t factor = 0;
    std::int32_t z3Region = 0;

    bool operator==(const TypeData&) const = default;
};

/// The attributes of a catalogue entry.
inline constexpr ReadField<TypeData> kTypeAttributes[] = {
    {L"FACTOR", TakeInt32<&TypeData::factor>},
    {L"Z3REGION", TakeInt32<&TypeData::z3Region>},
};
/// Its children, of whatever kind the type is.
inline constexpr ReadField<TypeData> kEveryType[] = {
    {L"NAME", TakeText<&TypeData::name>},
};
/// What is read of a numeric type and of a bit field, beside the limits.
inline constexpr ReadField<TypeData> kNumericType[] = {
    {L"UNIT", TakeText<&TypeData::units>},
    {L"BACNETUNIT", TakeText<&TypeData::bacnetUnits>},
    {L"LENGTH", TakeWholeNumber<&TypeData::length>},
    {L"A_COEF", TakeWholeNumber<&TypeData::aCoef>},
    {L"B_COEF", TakeWholeNumber<&TypeData::bCoef>},
    {L"C_COEF", TakeWholeNumber<&TypeData::cCoef>},
    {L"INVALIDVALUE", TakeText<&TypeData::invalidValue>},
};
inline constexpr ReadField<TypeData> kTextualType[] = {
    {L"LENGTH", TakeWholeNumber<&TypeData::length>},
};

/// One copy for the many types that say the same: a module has thousands of points
/// and a catalogue some two hundred types.
class TypePool {
  public:
    /// The data that equals `data` and is held by another type; else `data` itself,
    /// which is found from then on. Who holds the answer does not change it while
    /// somebody else holds it too. Throws std::bad_alloc.
    std::shared_ptr<TypeData> Shared(const std::shared_ptr<TypeData>& data);

  private:
    /// By identifier: what was found or given last. It ends with its last holder.
    std::unordered_map<std::wstring, std::weak_ptr<TypeData>> byId_;
};

} // namespace tam
