// SPDX-License-Identifier: MIT
// What the text cases can ask of the library.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/cases/case_file.h"
#include "tools/host.h"

namespace kalorfix::cases {

/// The inputs of a case: those that the row gives, the defaults of the procedure for the others.
class Inputs {
public:
    Inputs(const Values& defaults, const Values& given) : defaults_(defaults), given_(given) {}
    double operator[](const std::string& name) const;
    [[nodiscard]] float single(const std::string& name) const { return static_cast<float>((*this)[name]); }
    [[nodiscard]] bool given(const std::string& name) const { return given_.contains(name); }

private:
    const Values& defaults_;
    const Values& given_;
};

/// One way of asking: it calls the library with the inputs and returns the results by name.
struct Procedure {
    Values inputs;             ///< every input with its default
    std::string_view outputs;  ///< their names, a blank between two
    std::function<Values(const host::Library&, const Inputs&)> call;
};

/// All procedures by the name that a table gives in brackets.
[[nodiscard]] const std::map<std::string, Procedure, std::less<>>& procedures();

enum class Verdict { met, differs_as_declared, failed };

/// One compared value.
struct Finding {
    const Case* where = nullptr;
    const Expected* expected = nullptr;
    double computed = 0.0;
    double deviation = 0.0;
    double permitted = 0.0;
    double declared = 0.0;  ///< bound of the declared deviation; 0 without one
    Verdict verdict = Verdict::failed;
    [[nodiscard]] bool passed() const { return verdict != Verdict::failed; }
};

/// Runs every case of a table. Throws InputError when the table names a function, an input or an output
/// that does not exist.
[[nodiscard]] std::vector<Finding> run(const host::Library& library, const Table& table);

/// Against the tolerance and then, where one is declared, against the bound of the deviation.
[[nodiscard]] Verdict judge(double computed, const Expected& expected);

/// Whether a value is met: |computed - expected| within the tolerance, so that a NaN fails; an expected NaN or
/// infinity must be met as such.
[[nodiscard]] bool met(double computed, double expected, const Tolerance& tolerance);

}  // namespace kalorfix::cases
