#include "check/Surroundings.h"

#include "check/Utf8.h"

#include <utility>

namespace check {

void Surroundings::Add(StreamSummary stream) {
    if (run_.use_count() > 1) {
        run_ = std::make_shared<Run>(*run_); // copies stay as they are
    }
    if (!stream.definition.empty()) {
        run_->definitions.push_back(std::move(stream));
        return;
    }
    for (const std::string& name : stream.outputs) {
        stream.outputHashes.insert(HashOfName(name));
    }
    const auto addKey = [&](const std::string& name) {
        run_->channelKeys.insert(name.substr(0, name.find('_', 1)));
    };
    for (const auto* names : {&stream.inputs, &stream.outputs}) {
        for (const std::string& name : *names) {
            addKey(name);
        }
    }
    for (const auto& [name, general] : stream.attributes) {
        addKey(name);
        run_->attributesByHash.insert_or_assign(HashOfName(name), name);
    }
    run_->streams.push_back(std::move(stream));
}

std::string Surroundings::AttributeLike(std::string_view name) const {
    const auto found = run_->attributesByHash.find(HashOfName(name));
    return found != run_->attributesByHash.end() && EqualName(found->second, name) ? found->second : "";
}

} // namespace check
