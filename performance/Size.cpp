#include "performance/Size.h"

#include "performance/Material.h"

namespace benchmark {

std::wstring DefinitionPath() {
    return support::Component::Folder() + kDefinition + L".xml";
}

Size::Size(long count)
    : points(count)
    , stream(StreamText(count))
    , definitionFile(DefinitionPath(), DefinitionText(count))
    , definition(support::Parse(DefinitionText(count))) {
    for (long i = 0; i < points; ++i) {
        names.push_back(PointName(i));
        if (i % 3 == 1) {
            outputs.push_back(PointName(i));
        }
        inputs += i % 3 == 0 ? 1 : 0;
    }
}

} // namespace benchmark
