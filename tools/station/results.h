// Results of a station run: a table for a person, CSV or JSON lines for programs, or only what closed hours and days held.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tools/station/cycle.h"
#include "tools/station/output_file.h"
#include "tools/station/registers.h"

namespace kalorfix::tool::station {

enum class Format { table, csv, json, hours, days };

/// How the cycles of a channel ended.
struct ChannelSummary {
    std::uint64_t computed = 0, refused = 0;
    std::string first_refusal;  ///< time, step and reason
};

class Results {
public:
    virtual ~Results() = default;
    Results(const Results&) = delete;
    Results& operator=(const Results&) = delete;

    /// Before the first cycle.
    virtual void begin() = 0;
    virtual void cycle(const Channel& channel, const Measured& row, const Outcome& outcome,
                       const Registers& registers) = 0;
    /// After the last cycle; `with_registers` when they are not written to a file of their own.
    virtual void end(const StationRegisters& registers, const std::vector<ChannelSummary>& summaries,
                     bool interrupted, bool with_registers) = 0;

protected:
    Results() = default;
};

[[nodiscard]] std::unique_ptr<Results> make_results(Format format, const Station& station, TimeKind kind,
                                                    OutputFile& out);

}  // namespace kalorfix::tool::station
