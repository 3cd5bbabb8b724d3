// SPDX-License-Identifier: MIT
// The case files run against a library, sorted by subject, with their statistics.
#pragma once

#include <map>
#include <span>
#include <string>
#include <vector>

#include "tools/cases/procedures.h"
#include "tools/wording/wording.h"

namespace kalorfix::tool::report {

struct CaseFile {
    std::string name;  ///< without its directory
    std::vector<cases::Table> tables;
};

/// A compared value with the table that it comes from.
struct Value : cases::Finding {
    const CaseFile* file = nullptr;
    const cases::Table* table = nullptr;

    [[nodiscard]] std::string place() const { return file->name + ":" + std::to_string(where->line); }
    /// Whether it has no permitted deviation to compare with: words, nan, inf and exact numbers.
    [[nodiscard]] bool is_exact() const;
    /// Where the expected value comes from; a word is a status.
    [[nodiscard]] cases::Origin origin() const;
    /// |deviation| over permitted, or declared, deviation; infinite where the result is not a number.
    [[nodiscard]] double ratio() const;
};
using Values = std::span<const Value>;

/// What the report says of a function besides its numbers.
struct Subject {
    std::string key;  ///< the function, with the method behind a dot where that decides
    Text title = "-", method = "-", document = "-", in_force = "-";
    Text accepted = "-", documented = "-";  ///< ranges, of the interface and of the document

    /// The key where the function has no title.
    [[nodiscard]] std::string name(Language language) const {
        return title.in(language) == "-" ? key : std::string(title.in(language));
    }
};

/// The functions in the order of the report. One that is not among them has its name alone.
[[nodiscard]] const std::vector<Subject>& subjects();

struct Section {
    Subject subject;
    std::vector<Value> values;

    /// The values of each table apart.
    [[nodiscard]] std::vector<Values> tables() const;
    /// Outputs that are compared, in order of appearance.
    [[nodiscard]] std::vector<std::string> outputs() const;
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
    double worst_ratio = 0.0, mean_ratio = 0.0;
    double worst_deviation = 0.0, mean_deviation = 0.0;
    const Value* worst = nullptr;
};

/// Of these values.
[[nodiscard]] Statistics statistics(const std::vector<const Value*>& values);
/// Of one output, or of all with an empty name.
[[nodiscard]] Statistics statistics(const Section& section, const std::string& output = {});

/// The counts of all sections.
[[nodiscard]] Statistics totals(const Verification& verification);

/// What the case files declare under one reason, and what came of it.
struct Declaration {
    std::string reason, source;
    std::size_t values = 0, differing = 0;
    double largest = 0.0;  ///< relative deviation of those that differ
    const Value* at = nullptr;
};

/// In order of appearance; those of a reason together, or each source apart.
[[nodiscard]] std::vector<Declaration> declarations(const Verification& verification, bool each_source);

/// Reads all *.txt of a directory. Throws InputError naming the directory, or file and line.
[[nodiscard]] std::vector<CaseFile> read_cases(const std::string& directory);

/// Whether any case calculates with the tables of the gas data file.
[[nodiscard]] bool need_gas_data(const std::vector<CaseFile>& files);

/// Runs everything, each file with a library opened anew, as the tests do. Throws InputError when a table names what does not
/// exist.
[[nodiscard]] Verification verify(const std::string& library, const std::string& directory,
                                  std::vector<CaseFile> files);

}  // namespace kalorfix::tool::report
