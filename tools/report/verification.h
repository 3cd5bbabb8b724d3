// The case files run against a library, sorted by subject, with their statistics.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/cases/procedures.h"
#include "tools/report/subjects.h"

namespace kalorfix::tool::report {

struct CaseFile {
    std::string name;  ///< without its directory
    std::vector<cases::Table> tables;
};

/// The compared values of one table that belong to one subject.
struct Block {
    const CaseFile* file = nullptr;
    const cases::Table* table = nullptr;
    std::vector<cases::Finding> findings;
};

struct Section {
    Subject subject;
    std::vector<Block> blocks;
};

struct Verification {
    std::string directory;  ///< of the case files
    std::vector<CaseFile> files;
    std::vector<Section> sections;
};

struct Statistics {
    std::size_t cases = 0, values = 0;
    std::size_t exact = 0;      ///< of the values, those that must be met exactly
    std::size_t differing = 0;  ///< of the values, those that differ as declared
    std::size_t failed = 0;
    double worst_ratio =
        0.0;  ///< of deviation to permitted or, for those that differ as declared, declared deviation
    double mean_ratio = 0.0;
    double worst_deviation = 0.0, mean_deviation = 0.0;
    const cases::Finding* worst = nullptr;
    const CaseFile* worst_file = nullptr;
};

/// Whether a value has no permitted deviation to compare with: words, nan, inf and exact numbers.
[[nodiscard]] bool is_exact(const cases::Finding& finding);

/// |deviation| over permitted, or declared, deviation; infinite where the result is not a number.
[[nodiscard]] double ratio(const cases::Finding& finding);

/// Of one output, or of all with an empty name.
[[nodiscard]] Statistics statistics(const Section& section, const std::string& output = {});

/// Outputs that a section compares, in order of appearance.
[[nodiscard]] std::vector<std::string> outputs(const Section& section);

/// Reads all *.txt of a directory. Throws InputError naming the directory, or file and line.
[[nodiscard]] std::vector<CaseFile> read_cases(const std::string& directory);

/// Whether any case calculates with the tables of the gas data file.
[[nodiscard]] bool need_gas_data(const std::vector<CaseFile>& files);

/// Runs everything, each file with a library opened anew, as the tests do. Throws InputError when a table names what does not
/// exist.
[[nodiscard]] Verification verify(const std::string& library, const std::string& directory,
                                  std::vector<CaseFile> files);

[[nodiscard]] std::size_t failures(const Verification& verification);

/// Where a case stands: file:line.
[[nodiscard]] std::string place(const CaseFile& file, const cases::Case& where);

/// Every compared value in the order of the report.
template <class Visit>
void for_each_finding(const Verification& verification, Visit visit) {
    for (const Section& section : verification.sections)
        for (const Block& block : section.blocks)
            for (const cases::Finding& finding : block.findings) visit(section, block, finding);
}

/// What the case files declare under one reason, and what came of it.
struct Declaration {
    std::string reason, source;
    std::size_t values = 0, differing = 0;
    double largest = 0.0;  ///< relative deviation of those that differ
    const cases::Finding* at = nullptr;
    const CaseFile* file = nullptr;
};

/// In order of appearance; those of a reason together, or each source apart.
[[nodiscard]] std::vector<Declaration> declarations(const Verification& verification, bool each_source);

}  // namespace kalorfix::tool::report
