#include "props/water/residual.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kalorfix::water {
namespace {

// A factor exp(-60) cannot reach the last bit of any sum that it enters, whatever its derivatives multiply it by.
constexpr double negligible_exponent = 60.0;

constexpr int max_delta_power = 15;

// --- Layout of the merged power terms, derived from the printed table --------------------------------

struct MergedTerm {
    int group;  // index into group_exponents
    int d;
};

constexpr std::array<int, 6> group_exponents{0, 1, 2, 3, 4, 6};  // c of exp(-delta^c)

constexpr int group_of(int c) {
    for (std::size_t g = 0; g < group_exponents.size(); ++g)
        if (group_exponents[g] == c) return static_cast<int>(g);
    return -1;
}

struct Layout {
    std::array<MergedTerm, merged_term_count> merged{};
    std::array<std::size_t, power_terms.size()> merged_of{};            // term -> merged term
    std::array<std::size_t, group_exponents.size() + 1> group_begin{};  // group -> first merged term
};

constexpr Layout make_layout() {
    Layout layout;
    std::size_t m = 0;
    for (std::size_t k = 0; k < power_terms.size(); ++k) {
        if (k > 0 && (power_terms[k].c != power_terms[k - 1].c || power_terms[k].d != power_terms[k - 1].d))
            ++m;
        layout.merged_of[k] = m;
        layout.merged[m] = {group_of(power_terms[k].c), power_terms[k].d};
    }
    for (std::size_t g = 0; g <= group_exponents.size(); ++g) {
        std::size_t first = 0;
        while (first < merged_term_count && layout.merged[first].group < static_cast<int>(g)) ++first;
        layout.group_begin[g] = first;
    }
    return layout;
}

constexpr Layout layout = make_layout();

constexpr bool layout_holds() {
    for (std::size_t m = 0; m < merged_term_count; ++m) {
        if (layout.merged[m].group < 0 || layout.merged[m].d < 1 || layout.merged[m].d > max_delta_power)
            return false;
        if (m > 0 && layout.merged[m].group < layout.merged[m - 1].group) return false;
    }
    return true;
}
static_assert(layout_holds(), "the printed table must be sorted by c, with known c and 1 <= d <= 15");

// --- Powers of tau -----------------------------------------------------------------------------------

// Each integer power as a product of two lower ones.
struct PowerStep {
    int power, a, b;
};
constexpr std::array<PowerStep, 18> tau_chain{{
    {2, 1, 1},
    {3, 2, 1},
    {4, 2, 2},
    {5, 3, 2},
    {6, 3, 3},
    {7, 4, 3},
    {8, 4, 4},
    {9, 5, 4},
    {10, 5, 5},
    {11, 6, 5},
    {12, 6, 6},
    {13, 7, 6},
    {16, 8, 8},
    {22, 11, 11},
    {23, 12, 11},
    {44, 22, 22},
    {46, 23, 23},
    {50, 44, 6},
}};
constexpr int max_tau_power = 50;
constexpr std::size_t polynomial_terms = 7;  // terms 1..7 have exponents in eighths, the others integers

constexpr bool chain_covers_table() {
    for (std::size_t k = polynomial_terms; k < power_terms.size(); ++k) {
        bool found = power_terms[k].t == 1.0;
        for (const PowerStep& step : tau_chain) found = found || power_terms[k].t == step.power;
        if (!found) return false;
    }
    return true;
}
static_assert(chain_covers_table(), "every integer exponent of tau needs a step in the chain");

// tau^(eighths/8) for the exponents of terms 1..7: -0.5, 0.375, 0.5, 0.75, 0.875, 1.
class EighthPowers {
public:
    explicit EighthPowers(double tau)
        : tau_(tau), half_(std::sqrt(tau)), quarter_(std::sqrt(half_)), eighth_(std::sqrt(quarter_)) {}

    [[nodiscard]] double operator()(double exponent) const {
        const int eighths = static_cast<int>(exponent * 8.0);
        const int rest = (eighths + 8) % 8;
        double power = eighths < 0 ? 1.0 / tau_ : (eighths == 8 ? tau_ : 1.0);
        if (rest & 4) power *= half_;
        if (rest & 2) power *= quarter_;
        if (rest & 1) power *= eighth_;
        return power;
    }

private:
    double tau_, half_, quarter_, eighth_;
};

constexpr double square(double x) { return x * x; }

// Calls f.operator()<0>() to f.operator()<count - 1>(): straight-line code with constant indices.
template <std::size_t count, class Function>
void unrolled(Function&& f) {
    [&]<std::size_t... k>(std::index_sequence<k...>) { (f.template operator()<k>(), ...); }
    (std::make_index_sequence<count>{});
}

// --- Terms 55 and 56: F = n delta Delta^b psi ------------------------------------------------------------

// Delta(delta, tau) with its derivatives, divided by Delta; common to both terms. The powers of (delta - 1)^2 are
// written so that nothing is divided by delta - 1.
struct Distance {
    double ln_Delta;
    double inverse;       // 1 / Delta
    double d, dd, t, dt;  // Delta_d / Delta and so on; Delta_tt is 2
};

// Gives false where Delta is zero: at the critical point itself the second derivatives do not exist.
bool distance(double delta, double tau, Distance& out) {
    constexpr double A = nonanalytic_A, B = nonanalytic_B, a = nonanalytic_a, beta = nonanalytic_beta;
    static_assert(a == 3.5 && beta == 0.3, "the powers below are written out for these exponents");
    constexpr double half_inverse_beta = 1.0 / (2.0 * beta);

    const double x = delta - 1.0;
    const double y = x * x;                             // (delta - 1)^2
    const double y_2_3 = square(square(std::cbrt(x)));  // y^(1/(2 beta) - 1)
    const double y_5_2 = y * y * std::fabs(x);          // y^(a - 1)
    const double theta = (1.0 - tau) + A * y * y_2_3;
    const double Delta = theta * theta + B * y * y_5_2;
    if (!(Delta > 0.0)) return false;

    const double slope = 2.0 * A * theta / beta * y_2_3 + 2.0 * B * a * y_5_2;  // Delta_d / (delta - 1)
    const double curve = slope + 4.0 * B * a * (a - 1.0) * y_5_2 + 2.0 * square(A / beta) * y * y_2_3 * y_2_3 +
                         4.0 * A * theta / beta * (half_inverse_beta - 1.0) * y_2_3;
    const double inverse = 1.0 / Delta;
    out = {std::log(Delta),        inverse,
           x * slope * inverse,    curve * inverse,
           -2.0 * theta * inverse, -2.0 * A / beta * x * y_2_3 * inverse};
    return true;
}

// Adds the terms by the derivatives of l = ln(Delta^b psi).
void add_nonanalytic(double delta, double tau, Helmholtz& sum) {
    const double x = delta - 1.0;
    const double s = tau - 1.0;
    Distance D{};
    bool known = false;
    for (const NonanalyticTerm& term : nonanalytic_terms) {
        const double exponent = term.C * x * x + term.D * s * s;
        if (exponent > negligible_exponent) continue;
        if (!known && !distance(delta, tau, D)) return;
        known = true;

        const double F = term.n * delta * std::exp(term.b * D.ln_Delta - exponent);
        const double l_d = delta * (term.b * D.d - 2.0 * term.C * x);
        const double l_dd = delta * delta * (term.b * (D.dd - D.d * D.d) - 2.0 * term.C);
        const double l_t = tau * (term.b * D.t - 2.0 * term.D * s);
        const double l_tt = tau * tau * (term.b * (2.0 * D.inverse - D.t * D.t) - 2.0 * term.D);
        const double l_dt = delta * tau * term.b * (D.dt - D.d * D.t);
        sum.phi += F;
        sum.d += F * (1.0 + l_d);
        sum.dd += F * (2.0 * l_d + l_d * l_d + l_dd);
        sum.t += F * l_t;
        sum.tt += F * (l_t * l_t + l_tt);
        sum.dt += F * (l_t + l_d * l_t + l_dt);
    }
}

// --- Powers of delta and the exponential factors -----------------------------------------------------

struct DeltaPowers {
    explicit DeltaPowers(double delta) {
        power[0] = 1.0;
        power[1] = delta;
        for (std::size_t k = 2; k < power.size(); ++k) power[k] = power[k / 2] * power[k - k / 2];
    }
    std::array<double, max_delta_power + 1> power;
};

// The moments sum a delta^d, sum a d delta^d and sum a d^2 delta^d of one group's polynomial.
struct Moments {
    double m0 = 0.0, m1 = 0.0, m2 = 0.0;
};

// The exponents are known at compile time, so this is straight-line code without a table look-up.
template <std::size_t group>
Moments moments(const std::array<double, merged_term_count>& a, const DeltaPowers& delta) {
    constexpr std::size_t begin = layout.group_begin[group];
    constexpr std::size_t count = layout.group_begin[group + 1] - begin;
    Moments sum;
    unrolled<count>([&]<std::size_t k>() {
        constexpr int d = layout.merged[begin + k].d;
        const double x = a[begin + k] * delta.power[static_cast<std::size_t>(d)];
        sum.m0 += x;
        sum.m1 += static_cast<double>(d) * x;
        sum.m2 += static_cast<double>(d * d) * x;
    });
    return sum;
}

// exp(-delta^c) of a group, and u = c delta^c: each delta^d exp(-delta^c) has the logarithmic derivatives
// (d - u) and (d - u)(d - u - 1) - c u.
struct Decay {
    double factor, u, c;

    [[nodiscard]] double d(const Moments& m) const { return factor * (m.m1 - u * m.m0); }
    [[nodiscard]] double dd(const Moments& m) const {
        return factor * (m.m2 - (2.0 * u + 1.0) * m.m1 + u * (u + 1.0 - c) * m.m0);
    }
};

template <std::size_t group>
Decay decay(const DeltaPowers& delta) {
    constexpr int c = group_exponents[group];
    const double power = delta.power[static_cast<std::size_t>(c)];
    return {c == 0 ? 1.0 : std::exp(-power), c * power, c};
}

}  // namespace

ResidualAt::ResidualAt(double tau) : tau_(tau) {
    std::array<double, max_tau_power + 1> power{};
    power[1] = tau;
    for (const PowerStep& step : tau_chain)
        power[static_cast<std::size_t>(step.power)] =
            power[static_cast<std::size_t>(step.a)] * power[static_cast<std::size_t>(step.b)];

    const EighthPowers eighths(tau);
    merged_.fill(0.0);
    unrolled<power_terms.size()>([&]<std::size_t k>() {
        constexpr PowerTerm term = power_terms[k];
        if constexpr (k < polynomial_terms)
            term_[k] = term.n * eighths(term.t);
        else
            term_[k] = term.n * power[static_cast<std::size_t>(term.t)];
        merged_[layout.merged_of[k]] += term_[k];
    });

    second_virial_ = 0.0;
    unrolled<merged_term_count>([&]<std::size_t m>() {
        if constexpr (layout.merged[m].d == 1) second_virial_ += merged_[m];
    });

    gaussian_sum_ = 0.0;
    for (std::size_t k = 0; k < gaussian_terms.size(); ++k) {
        const GaussianTerm& g = gaussian_terms[k];
        const double exponent = g.beta * square(tau - g.gamma);
        const double tau_power = g.t == 0 ? 1.0 : power[static_cast<std::size_t>(g.t)];
        gaussian_factor_[k] = exponent > negligible_exponent ? 0.0 : g.n * tau_power * std::exp(-exponent);
        gaussian_sum_ += gaussian_factor_[k];
    }

    double least = negligible_exponent + 1.0;
    for (const NonanalyticTerm& term : nonanalytic_terms) least = std::min(least, term.D * square(tau - 1.0));
    near_critical_ = least <= negligible_exponent;
}

DensityDerivatives ResidualAt::density_derivatives(double delta) const {
    const DeltaPowers powers(delta);
    DensityDerivatives sum{0.0, 0.0};

    unrolled<group_exponents.size()>([&]<std::size_t group>() {
        const Moments m = moments<group>(merged_, powers);
        const Decay e = decay<group>(powers);
        sum.d += e.d(m);
        sum.dd += e.dd(m);
    });

    if (gaussian_sum_ != 0.0) {
        const double x = delta - gaussian_epsilon;
        const double e = gaussian_sum_ * powers.power[gaussian_d] * std::exp(-gaussian_alpha * x * x);
        const double factor = gaussian_d - 2.0 * gaussian_alpha * delta * x;
        sum.d += e * factor;
        sum.dd += e * (factor * factor - gaussian_d - 2.0 * gaussian_alpha * delta * delta);
    }

    if (near_critical_) {
        Helmholtz rest{};
        add_nonanalytic(delta, tau_, rest);
        sum.d += rest.d;
        sum.dd += rest.dd;
    }
    return sum;
}

Helmholtz ResidualAt::all(double delta) const {
    const DeltaPowers powers(delta);
    Helmholtz sum{};

    // The same merging for the factors t and t (t - 1) that the derivatives by tau bring.
    std::array<double, merged_term_count> merged_t{};
    std::array<double, merged_term_count> merged_tt{};
    unrolled<power_terms.size()>([&]<std::size_t k>() {
        constexpr double t = power_terms[k].t;
        merged_t[layout.merged_of[k]] += t * term_[k];
        merged_tt[layout.merged_of[k]] += t * (t - 1.0) * term_[k];
    });

    unrolled<group_exponents.size()>([&]<std::size_t group>() {
        const Moments m = moments<group>(merged_, powers);
        const Moments mt = moments<group>(merged_t, powers);
        const Moments mtt = moments<group>(merged_tt, powers);
        const Decay e = decay<group>(powers);
        sum.phi += e.factor * m.m0;
        sum.d += e.d(m);
        sum.dd += e.dd(m);
        sum.t += e.factor * mt.m0;
        sum.tt += e.factor * mtt.m0;
        sum.dt += e.d(mt);
    });

    if (gaussian_sum_ != 0.0) {
        const double x = delta - gaussian_epsilon;
        const double e = powers.power[gaussian_d] * std::exp(-gaussian_alpha * x * x);
        const double factor = gaussian_d - 2.0 * gaussian_alpha * delta * x;
        for (std::size_t k = 0; k < gaussian_terms.size(); ++k) {
            const GaussianTerm& g = gaussian_terms[k];
            const double value = e * gaussian_factor_[k];
            const double tau_factor = g.t - 2.0 * g.beta * tau_ * (tau_ - g.gamma);
            sum.phi += value;
            sum.d += value * factor;
            sum.dd += value * (factor * factor - gaussian_d - 2.0 * gaussian_alpha * delta * delta);
            sum.t += value * tau_factor;
            sum.tt += value * (tau_factor * tau_factor - g.t - 2.0 * g.beta * tau_ * tau_);
            sum.dt += value * factor * tau_factor;
        }
    }

    if (near_critical_) add_nonanalytic(delta, tau_, sum);
    return sum;
}

}  // namespace kalorfix::water
