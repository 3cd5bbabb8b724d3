// SPDX-License-Identifier: MIT
// The protocol as a form for paper, and as CSV beside it.
#pragma once

#include <string>

#include "tools/html.h"
#include "tools/point_options.h"
#include "tools/protocol/protocol.h"

namespace kalorfix::tool::protocol {

/// What the head of the form says; an empty text leaves room to write by hand.
struct Head {
    std::string number, object, device, serial, software, checksum, date, inspector, representative;
};

struct Sheet {
    Language language = Language::english;
    Head head{};
    html::Facts reference{};  ///< what the reference results were computed with
    std::string station;      ///< file, channel
    DescribedPoint point{};
    std::vector<Point> points{};
    bool with_device = false;
    std::vector<bool> shown{};  ///< of shown_by: the columns that are compared, or left to fill in
    double limit_pct = 0;
};

[[nodiscard]] std::string html_of(const Sheet& sheet);
[[nodiscard]] std::string csv_of(const Sheet& sheet);
/// MET, NOT MET or NOT COMPLETE with the counts; nothing without a device.
[[nodiscard]] std::string conclusion(const Sheet& sheet, Language language);

}  // namespace kalorfix::tool::protocol
