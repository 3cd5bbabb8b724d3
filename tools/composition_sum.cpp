// SPDX-License-Identifier: MIT
#include "tools/composition_sum.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdio>
#include <numeric>

#include "tools/names.h"
#include "tools/text.h"

namespace kalorfix::tool {
namespace {

constexpr double whole_pct = 100.0, accepted_pct = 1.0, silent_pct = 0.01, rounding_pct = 1e-5;

const char* what_it_looks_like(double sum_pct) {
    constexpr double of_fractions = 1.0, near = 0.02;
    if (std::fabs(sum_pct - of_fractions) < near) return "are these fractions?";
    return sum_pct < whole_pct ? "is a component missing?" : "is a share wrong?";
}

// More than the gas itself.
void judge_shares(double nitrogen_pct, double carbon_dioxide_pct, const std::string& where) {
    const double both = nitrogen_pct + carbon_dioxide_pct;
    if (both > whole_pct + rounding_pct)
        throw InputError(where, ": nitrogen and carbon dioxide are ", fmt::format("{:.7g}", both),
                         " % together, more than the gas");
}

}  // namespace

void judge_contents(double rho_c, double nitrogen_pct, double carbon_dioxide_pct, const std::string& where) {
    judge_shares(nitrogen_pct, carbon_dioxide_pct, where);
    const double alone = weight_of_contents(nitrogen_pct, carbon_dioxide_pct);
    if (alone > rho_c)
        throw InputError(where, ": nitrogen and carbon dioxide alone weigh ", fmt::format("{:.4g}", alone),
                         " kg/m3, more than the gas with its ", fmt::format("{:.7g}", rho_c), " kg/m3");
}

double judge_sum(std::array<double, 15>& x, bool volume_fractions, const SumRule& rule,
                 const std::string& where, const std::string& how) {
    const double unit = volume_fractions ? whole_pct : 1.0;
    const double sum = std::accumulate(x.begin(), x.end(), 0.0), sum_pct = unit * sum;
    const double off = std::fabs(sum_pct - whole_pct);
    const std::string sums = fmt::format("the composition sums to {:.7g} %", sum_pct);
    if (off > accepted_pct + rounding_pct && !rule.any && !rule.normalise)
        throw InputError(where, ": ", sums, ", not to 100 %: ", what_it_looks_like(sum_pct), " (", how, ")");
    if (rule.normalise)
        for (double& share : x) share *= whole_pct / sum_pct;
    judge_shares(unit * x[nitrogen], unit * x[carbon_dioxide], where);
    if (off > silent_pct + rounding_pct)
        fmt::print(stderr, "kalorfix: warning: {}\n",
                   printable(fmt::format("{}: {}{}", where, sums, rule.normalise ? ", scaled to 100 %" : "")));
    return sum_pct;
}

void warn_of_heats(const std::string& where) {
    fmt::print(
        stderr,
        "kalorfix: warning: {}: the heats of combustion of AGA8-92DC take volume fractions for mole per cent; "
        "energy is wrong, give component,mole_percent\n",
        printable(where));
}

}  // namespace kalorfix::tool
