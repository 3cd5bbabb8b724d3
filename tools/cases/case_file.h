// SPDX-License-Identifier: MIT
// Text cases: known answers as data, for the tests and for whoever verifies the library.
//
// A file holds tables. A table begins with the function in brackets and has a few settings, the columns and
// the rows:
//
//     # comment
//     [t_param_1]
//     source: where the numbers come from
//     origin: printed K=own                where the expected values come from, and those of columns that differ
//     note: anything that the reader should know (may be repeated)
//     fixed: mode=1 p_MPa=0.1              inputs that are the same in all rows
//     tolerance: rho_kg_m3=5e-7 kappa=r1e-7 permitted deviation, absolute or (r) relative
//     deviation: kappa=r3e-4 doubled cross term     declared deviation: bound and reason
//     columns: case t_C -> status rho_kg_m3 kappa
//     c1  26.85  computed  996.5560  22.6~r1e-3
//
// Inputs stand before the arrow, expected results behind it. An expected result is a number (nan and inf are
// numbers), a word that the function knows (computed, refused, water, ...), or - for "not compared"; behind ~
// it may carry a tolerance of its own, which replaces that of the column. A column without a tolerance must
// be met exactly. A ~ tolerance with both parts, 1e-6,r1e-7, allows the larger of the two. Two cases NAME-in and
// NAME-out of a table stand on the two sides of a limit; what sets them apart are the inputs that differ.
//
// An origin is printed (in a publication), program (computed by another program), own (an evaluation of one's own) or limit (a
// status or a limit); a word is a limit whatever the table says. Without the line it is not stated.
//
// A deviation line, one a column, is for printed values that the library does not meet on purpose: a result beyond the
// tolerance but within the bound differs as declared. The reason is the name of an entry of docs/deviations.md.
#pragma once

#include <istream>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kalorfix::cases {

struct Tolerance {
    double absolute = 0.0;
    double relative = 0.0;
};

/// How far a result may be from a printed value that the library does not meet on purpose.
struct Deviation {
    Tolerance bound;
    std::string reason;  ///< name of an entry of docs/deviations.md
};

/// Where an expected value comes from.
enum class Origin { printed, program, own, limit, not_stated };

struct Expected {
    std::string column;
    double value = 0.0;
    std::string text;  ///< as written in the file
    Tolerance tolerance;
    std::optional<Deviation> declared;
    Origin origin = Origin::not_stated;
};

using Values = std::map<std::string, double, std::less<>>;

struct Case {
    std::string id;
    int line = 0;
    Values inputs;  ///< including the fixed ones
    std::vector<Expected> expected;
};

struct Table {
    std::string function;
    std::string source;
    std::vector<std::string> notes;
    std::vector<Case> cases;
    int line = 0;  ///< of its heading
};

/// Reads all tables of a file. Throws InputError naming `name`, the line and what is wrong with it.
[[nodiscard]] std::vector<Table> read_tables(std::istream& in, const std::string& name);

/// A number or a known word as a number; nothing for anything else.
[[nodiscard]] std::optional<double> parse_value(std::string_view text);

}  // namespace kalorfix::cases
