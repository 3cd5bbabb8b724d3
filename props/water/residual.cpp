// SPDX-License-Identifier: MIT
#include "props/water/residual.h"

#include <algorithm>
#include <cmath>

#include "runtime/exponential.h"
#include "runtime/unrolled.h"

namespace kalorfix::water {
namespace {

// A factor exp(-x) beyond these cannot reach the last bit of any sum that it enters, whatever multiplies it: terms 52 to 54 by
// temperature, terms 48 to 51 (up to tau^50) and 47 by density.
constexpr double negligible_exponent = 60.0;
constexpr double negligible_decay = 110.0;

// The same for terms 55 and 56: in the density equation, in the second derivatives by temperature above T_c, and below it,
// where no state has a density near the critical one.
constexpr double negligible_in_density = 22.0;
constexpr double felt_in_higher_order = 20.0;
constexpr double negligible_above_critical = 44.0;
constexpr double negligible_below_critical = 38.5;

// --- Layout of the merged power terms, derived from the printed table --------------------------------

constexpr std::array<int, 6> group_exponents{0, 1, 2, 3, 4, 6};  // c of exp(-delta^c)
constexpr int max_delta_power = 15;

struct Layout {
    std::array<int, merged_term_count> c{}, d{};                        // of each merged term
    std::array<std::size_t, power_terms.size()> merged_of{};            // term -> merged term
    std::array<std::size_t, group_exponents.size() + 1> group_begin{};  // group -> first merged term
};

constexpr Layout make_layout() {
    Layout made;
    std::size_t m = 0;
    for (std::size_t k = 0; k < power_terms.size(); ++k) {
        if (k > 0 && (power_terms[k].c != made.c[m] || power_terms[k].d != made.d[m])) ++m;
        made.merged_of[k] = m;
        made.c[m] = power_terms[k].c;
        made.d[m] = power_terms[k].d;
    }
    for (std::size_t g = 0; g < group_exponents.size(); ++g) {
        std::size_t& end = made.group_begin[g + 1] = made.group_begin[g];
        while (end <= m && made.c[end] == group_exponents[g]) ++end;
    }
    return made;
}

constexpr Layout layout = make_layout();
static_assert(layout.merged_of.back() + 1 == merged_term_count);
static_assert(layout.group_begin.back() == merged_term_count, "the table must be sorted by c, with known c");
static_assert(*std::max_element(layout.d.begin(), layout.d.end()) == max_delta_power);

// --- Powers of tau -----------------------------------------------------------------------------------

// The integer powers that the table asks for, with those that they are made of: each is the product of the two nearest to its
// half, but 50 of 44 and 6.
constexpr std::array<std::size_t, 18> tau_chain{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 16, 22, 23, 44, 46, 50};
constexpr std::size_t larger_factor(std::size_t power) { return power == 50 ? 44 : (power + 1) / 2; }
// Terms 1..7 have exponents in eighths, up to 1, the others integers.
constexpr std::size_t polynomial_terms = 7;
static_assert(std::ranges::all_of(power_terms, [](const PowerTerm& term) {
    return term.t <= 1.0 || std::ranges::find(tau_chain, static_cast<std::size_t>(term.t)) != tau_chain.end();
}));

// tau^(eighths/8) for the exponents of terms 1..7: -0.5, 0.375, 0.5, 0.75, 0.875, 1. The roots are those of 2nd, 4th and 8th degree.
double eighth_power(double tau, const std::array<double, 3>& roots, double exponent) {
    const int eighths = static_cast<int>(exponent * 8.0);
    const int rest = (eighths + 8) % 8;
    double power = eighths < 0 ? 1.0 / tau : (eighths == 8 ? tau : 1.0);
    if (rest & 4) power *= roots[0];
    if (rest & 2) power *= roots[1];
    if (rest & 1) power *= roots[2];
    return power;
}

constexpr double square(double x) { return x * x; }

// --- Powers of delta and the exponential factors -----------------------------------------------------

struct DeltaPowers {
    explicit DeltaPowers(double delta) {
        power[0] = 1.0;
        power[1] = delta;
        for (std::size_t k = 2; k < power.size(); ++k) power[k] = power[k / 2] * power[k - k / 2];
    }
    std::array<double, max_delta_power + 1> power;
};

// The moments sum a d^n delta^d of one group's polynomial, n = 0 to order.
template <int order, class Value>
using Moments = std::array<Value, order + 1>;

// The exponents are known at compile time, so this is straight-line code without a table look-up.
template <int order, std::size_t group, class Value>
Moments<order, Value> moments(const std::array<Value, merged_term_count>& a, const DeltaPowers& delta) {
    constexpr std::size_t begin = layout.group_begin[group];
    constexpr std::size_t count = layout.group_begin[group + 1] - begin;
    Moments<order, Value> sum{};
    unrolled<count>([&]<std::size_t k>() {
        constexpr int d = layout.d[begin + k];
        Value x = a[begin + k] * delta.power[static_cast<std::size_t>(d)];
        for (Value& moment : sum) {
            moment += x;
            x *= d;
        }
    });
    return sum;
}

// exp(-delta^c) of each group; in the place of the first, which has none, that of the Gaussian terms.
std::array<double, group_exponents.size()> exponential_factors(const DeltaPowers& delta) {
    std::array<double, group_exponents.size()> x;
    x[0] = -std::min(gaussian_alpha * square(delta.power[1] - gaussian_epsilon), negligible_decay);
    for (std::size_t g = 1; g < x.size(); ++g)
        x[g] = -std::min(delta.power[static_cast<std::size_t>(group_exponents[g])], negligible_decay);
    exponentials(x);
    return x;
}

// exp(-delta^c) of a group, 1 for c = 0: applied to delta^d exp(-delta^c), delta times the derivative by delta is d - u with
// u = c delta^c, and u itself goes to c u. b1 to b4 are what that makes of the exponential alone.
template <int c>
struct Decay {
    double factor, b1, b2, b3, b4;

    Decay(const DeltaPowers& delta, double exponential) : factor(exponential) {
        const double u = c * delta.power[static_cast<std::size_t>(c)];
        b1 = -u;
        b2 = u * (u - c);
        b3 = -u * (u * (u - 3 * c) + c * c);
        b4 = u * (u * (u * (u - 6 * c) + 7 * c * c) - c * c * c);
    }
    // That derivation n times, on the group's polynomial by its moments.
    template <int n, class M>
    [[nodiscard]] auto derived(const M& m) const {
        if constexpr (c == 0) return m[n];
        if constexpr (n == 0) return factor * m[0];
        if constexpr (n == 1) return factor * (m[1] + b1 * m[0]);
        if constexpr (n == 2) return factor * (m[2] + 2.0 * b1 * m[1] + b2 * m[0]);
        if constexpr (n == 3) return factor * (m[3] + 3.0 * (b1 * m[2] + b2 * m[1]) + b3 * m[0]);
        if constexpr (n == 4)
            return factor * (m[4] + 4.0 * (b1 * m[3] + b3 * m[1]) + 6.0 * b2 * m[2] + b4 * m[0]);
    }
};

}  // namespace

ResidualAt::ResidualAt(double tau) : tau_(tau) {
    std::array<double, tau_chain.back() + 1> power{};
    power[1] = tau;
    unrolled<tau_chain.size()>([&]<std::size_t k>() {
        constexpr std::size_t whole = tau_chain[k], larger = larger_factor(whole);
        power[whole] = power[larger] * power[whole - larger];
    });

    const double half = std::sqrt(tau), quarter = std::sqrt(half);
    const std::array roots{half, quarter, std::sqrt(quarter)};
    merged_.fill(0.0);
    unrolled<power_terms.size()>([&]<std::size_t k>() {
        constexpr PowerTerm term = power_terms[k];
        if constexpr (k < polynomial_terms)
            term_[k] = term.n * eighth_power(tau, roots, term.t);
        else
            term_[k] = term.n * power[static_cast<std::size_t>(term.t)];
        merged_[layout.merged_of[k]] += term_[k];
    });

    second_virial_ = 0.0;
    unrolled<merged_term_count>([&]<std::size_t m>() {
        if constexpr (layout.d[m] == 1) second_virial_ += merged_[m];
    });

    gaussian_sum_ = 0.0;
    for (std::size_t k = 0; k < gaussian_terms.size(); ++k) {
        const GaussianTerm& g = gaussian_terms[k];
        const double exponent = g.beta * square(tau - g.gamma);
        const double tau_power = g.t == 0 ? 1.0 : power[static_cast<std::size_t>(g.t)];
        gaussian_factor_[k] = exponent > negligible_exponent ? 0.0 : g.n * tau_power * exponential(-exponent);
        gaussian_sum_ += gaussian_factor_[k];
    }

    near_critical_ = nonanalytic_terms[0].D * square(tau - 1.0) <= negligible_above_critical;
}

DensityDerivatives ResidualAt::density_derivatives(double delta) const {
    const DeltaPowers powers(delta);
    const auto factor = exponential_factors(powers);
    double first = 0.0, second = 0.0, third = 0.0, fourth = 0.0;
    bool critical = false;
    Helmholtz nonanalytic{};
    if (near_critical_) {
        const double exponent = nonanalytic_exponent(nonanalytic_terms[0], delta, tau_);
        critical = exponent < felt_in_higher_order;
        if (exponent < negligible_in_density) add_nonanalytic(delta, tau_, negligible_in_density, nonanalytic);
    }

    unrolled<group_exponents.size()>([&]<std::size_t group>() {
        const auto m = moments<4, group>(merged_, powers);
        const Decay<group_exponents[group]> e(powers, factor[group]);
        first += e.template derived<1>(m);
        second += e.template derived<2>(m);
        third += e.template derived<3>(m);
        fourth += e.template derived<4>(m);
    });

    if (gaussian_sum_ != 0.0) {
        const double x = delta - gaussian_epsilon;
        const double e = gaussian_sum_ * powers.power[gaussian_d] * factor[0];
        // Logarithmic derivatives of delta^d exp(-alpha (delta - 1)^2)
        constexpr double k = 2.0 * gaussian_alpha;
        const double l1 = gaussian_d - k * delta * x;
        const double l2 = -k * delta * (2.0 * delta - 1.0);
        const double l3 = -k * delta * (4.0 * delta - 1.0);
        const double l4 = -k * delta * (8.0 * delta - 1.0);
        first += e * l1;
        second += e * (l1 * l1 + l2);
        third += e * (l1 * (l1 * l1 + 3.0 * l2) + l3);
        fourth += e * (l1 * (l1 * (l1 * l1 + 6.0 * l2) + 4.0 * l3) + 3.0 * l2 * l2 + l4);
    }

    // From powers of delta d/d(delta) to delta^n times the n-th derivative.
    return {{first + nonanalytic.d, second - first + nonanalytic.dd},
            third - 3.0 * second + 2.0 * first,
            fourth - 6.0 * third + 11.0 * second - 6.0 * first,
            critical};
}

Helmholtz ResidualAt::all(double delta) const {
    const DeltaPowers powers(delta);
    const auto factor = exponential_factors(powers);
    Helmholtz sum{};
    if (near_critical_)
        add_nonanalytic(delta, tau_, tau_ < 1.0 ? negligible_above_critical : negligible_below_critical, sum);

    // The same merging for the factors t and t (t - 1) that the derivatives by tau bring, both at a time.
    std::array<Pair, merged_term_count> merged_t{};
    unrolled<power_terms.size()>([&]<std::size_t k>() {
        constexpr double t = power_terms[k].t;
        merged_t[layout.merged_of[k]] += Pair{t, t * (t - 1.0)} * term_[k];
    });

    unrolled<group_exponents.size()>([&]<std::size_t group>() {
        const auto m = moments<2, group>(merged_, powers);
        const auto mt = moments<1, group>(merged_t, powers);
        const Decay<group_exponents[group]> e(powers, factor[group]);
        sum.phi += e.template derived<0>(m);
        sum.d += e.template derived<1>(m);
        sum.dd += e.template derived<2>(m) - e.template derived<1>(m);
        sum.t += e.template derived<0>(mt)[0];
        sum.tt += e.template derived<0>(mt)[1];
        sum.dt += e.template derived<1>(mt)[0];
    });

    if (gaussian_sum_ != 0.0) {
        const double x = delta - gaussian_epsilon;
        const double e = powers.power[gaussian_d] * factor[0];
        const double slope = gaussian_d - 2.0 * gaussian_alpha * delta * x;
        for (std::size_t k = 0; k < gaussian_terms.size(); ++k) {
            const GaussianTerm& g = gaussian_terms[k];
            const double value = e * gaussian_factor_[k];
            const double tau_factor = g.t - 2.0 * g.beta * tau_ * (tau_ - g.gamma);
            sum.phi += value;
            sum.d += value * slope;
            sum.dd += value * (slope * slope - gaussian_d - 2.0 * gaussian_alpha * delta * delta);
            sum.t += value * tau_factor;
            sum.tt += value * (tau_factor * tau_factor - g.t - 2.0 * g.beta * tau_ * tau_);
            sum.dt += value * slope * tau_factor;
        }
    }
    return sum;
}

}  // namespace kalorfix::water
