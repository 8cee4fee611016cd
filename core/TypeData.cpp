#include "core/TypeData.h"

namespace tam {

std::shared_ptr<TypeData> TypePool::Shared(const std::shared_ptr<TypeData>& data) {
    std::weak_ptr<TypeData>& place = byId_[data->id];
    if (auto held = place.lock(); held && *held == *data) {
        return held;
    }
    place = data;
    return data;
}

} // namespace tam
