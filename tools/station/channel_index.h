// SPDX-License-Identifier: MIT
// The channels of a station by their names.
#pragma once

#include <optional>
#include <string_view>
#include <unordered_map>

#include "tools/station/station.h"

namespace kalorfix::tool::station {

/// Outlived by the station whose names it holds.
class ChannelIndex {
public:
    explicit ChannelIndex(const Station& station) {
        places_.reserve(station.channels.size());
        for (const Channel& channel : station.channels) places_.emplace(channel.name, places_.size());
    }

    /// Index in the station; nothing for a name that it does not have.
    [[nodiscard]] std::optional<std::size_t> find(std::string_view name) const {
        const auto found = places_.find(name);
        return found == places_.end() ? std::nullopt : std::optional(found->second);
    }

private:
    std::unordered_map<std::string_view, std::size_t> places_;
};

}  // namespace kalorfix::tool::station
