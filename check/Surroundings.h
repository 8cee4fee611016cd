#pragma once

#include "check/Catalogue.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace check {

/// What other documents need to know of a device stream, or of the definition of a channel.
struct StreamSummary {
    std::string file;
    /// A definition's, and which sections it has: inputs, outputs, attributes.
    std::string definition;
    std::array<bool, 3> sections{};
    std::string objectId;
    std::vector<std::string> inputs;
    std::vector<std::string> outputs;
    /// Of the outputs' names, in any letter case (HashOfName); made when it is added to Surroundings.
    std::unordered_set<std::uint64_t> outputHashes;
    /// Attributes and the general types of their types; "" when it is not known.
    std::map<std::string, std::string> attributes;
};

/// The documents around the one that is checked: the catalogue, and the streams and the
/// definitions of channels of the same run.
class Surroundings {
  public:
    Surroundings() = default;
    explicit Surroundings(const Catalogue* catalogue) : catalogue_(catalogue) {}
    /// Another catalogue and the same streams.
    Surroundings(const Catalogue* catalogue, const Surroundings& others)
        : catalogue_(catalogue), run_(others.run_) {}

    /// Empty when there is none: then types are not looked up.
    const Catalogue& Types() const {
        static const Catalogue kNone;
        return catalogue_ != nullptr ? *catalogue_ : kNone;
    }
    bool HasTypes() const { return !Types().IsEmpty(); }

    void Add(StreamSummary stream);
    const std::vector<StreamSummary>& Streams() const noexcept { return run_->streams; }
    const std::vector<StreamSummary>& Definitions() const noexcept { return run_->definitions; }
    /// What the names of the streams' points begin with.
    const std::set<std::string, std::less<>>& ChannelKeys() const noexcept { return run_->channelKeys; }
    /// Whether one of the streams' attributes has this name but for its letter case: that name, or "".
    std::string AttributeLike(std::string_view name) const;

  private:
    struct Run {
        std::vector<StreamSummary> streams;
        std::vector<StreamSummary> definitions;
        std::set<std::string, std::less<>> channelKeys;
        std::unordered_map<std::uint64_t, std::string> attributesByHash;
    };
    const Catalogue* catalogue_ = nullptr;
    std::shared_ptr<Run> run_ = std::make_shared<Run>();
};

} // namespace check
