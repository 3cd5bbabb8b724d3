// Results of a station run: a table for a person, CSV or JSON lines for programs, or only what closed hours and days held.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tools/output_file.h"
#include "tools/station/cycle.h"
#include "tools/station/registers.h"

namespace kalorfix::tool::station {

/// How the cycles of a channel ended.
struct ChannelSummary {
    std::uint64_t computed = 0, refused = 0;
    std::string first_refusal;  ///< time, step and reason
};

class Results {
public:
    Results(const Station& station, TimeKind kind, OutputFile& out)
        : station_(station), kind_(kind), out_(out) {}
    virtual ~Results() = default;
    Results(const Results&) = delete;
    Results& operator=(const Results&) = delete;

    /// Before the first cycle.
    virtual void begin() {}
    virtual void cycle(const Channel& channel, const Measured& row, const Outcome& outcome,
                       const Registers& registers) = 0;
    /// After the last cycle; `with_registers` when they are not written to a file of their own.
    virtual void end(const StationRegisters& registers, const std::vector<ChannelSummary>& summaries,
                     bool interrupted, bool with_registers) = 0;

protected:
    const Station& station_;
    TimeKind kind_;
    OutputFile& out_;
};

/// The formats: table, csv, json, hours, days. Null for another word.
[[nodiscard]] std::unique_ptr<Results> make_results(const std::string& format, const Station& station,
                                                    TimeKind kind, OutputFile& out);

}  // namespace kalorfix::tool::station
