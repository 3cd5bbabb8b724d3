// SPDX-License-Identifier: MIT
#include "bench/if97.h"

#include <cmath>
#include <cstddef>

namespace kalorfix::bench {
namespace {

struct If97Term {
    int I, J;
    double n;
};
constexpr If97Term if97_region1[] = {
    {0, -2, 0.14632971213167},       {0, -1, -0.84548187169114},      {0, 0, -3.756360367204},
    {0, 1, 3.3855169168385},         {0, 2, -0.95791963387872},       {0, 3, 0.15772038513228},
    {0, 4, -0.016616417199501},      {0, 5, 0.00081214629983568},     {1, -9, 0.00028319080123804},
    {1, -7, -0.00060706301565874},   {1, -1, -0.018990068218419},     {1, 0, -0.032529748770505},
    {1, 1, -0.021841717175414},      {1, 3, -5.283835796993e-05},     {2, -3, -0.00047184321073267},
    {2, 0, -0.00030001780793026},    {2, 1, 4.7661393906987e-05},     {2, 3, -4.4141845330846e-06},
    {2, 17, -7.2694996297594e-16},   {3, -4, -3.1679644845054e-05},   {3, 0, -2.8270797985312e-06},
    {3, 6, -8.5205128120103e-10},    {4, -5, -2.2425281908e-06},      {4, -2, -6.5171222895601e-07},
    {4, 10, -1.4341729937924e-13},   {5, -8, -4.0516996860117e-07},   {8, -11, -1.2734301741641e-09},
    {8, -6, -1.7424871230634e-10},   {21, -29, -6.8762131295531e-19}, {23, -31, 1.4478307828521e-20},
    {29, -38, 2.6335781662795e-23},  {30, -39, -1.1947622640071e-23}, {31, -40, 1.8228094581404e-24},
    {32, -41, -9.3537087292458e-26},
};
constexpr If97Term if97_region2[] = {
    {1, 0, -0.0017731742473213},    {1, 1, -0.017834862292358},     {1, 2, -0.045996013696365},
    {1, 3, -0.057581259083432},     {1, 6, -0.05032527872793},      {2, 1, -3.3032641670203e-05},
    {2, 2, -0.00018948987516315},   {2, 4, -0.0039392777243355},    {2, 7, -0.043797295650573},
    {2, 36, -2.6674547914087e-05},  {3, 0, 2.0481737692309e-08},    {3, 1, 4.3870667284435e-07},
    {3, 3, -3.227767723857e-05},    {3, 6, -0.0015033924542148},    {3, 35, -0.040668253562649},
    {4, 1, -7.8847309559367e-10},   {4, 2, 1.2790717852285e-08},    {4, 3, 4.8225372718507e-07},
    {5, 7, 2.2922076337661e-06},    {6, 3, -1.6714766451061e-11},   {6, 16, -0.0021171472321355},
    {6, 35, -23.895741934104},      {7, 0, -5.905956432427e-18},    {7, 11, -1.2621808899101e-06},
    {7, 25, -0.038946842435739},    {8, 8, 1.1256211360459e-11},    {8, 36, -8.2311340897998},
    {9, 13, 1.9809712802088e-08},   {10, 4, 1.0406965210174e-19},   {10, 10, -1.0234747095929e-13},
    {10, 14, -1.0018179379511e-09}, {16, 29, -8.0882908646985e-11}, {16, 50, 0.10693031879409},
    {18, 57, -0.33662250574171},    {20, 20, 8.9185845355421e-25},  {20, 35, 3.0629316876232e-13},
    {20, 48, -4.2002467698208e-06}, {21, 21, -5.9056029685639e-26}, {22, 53, 3.7826947613457e-06},
    {23, 39, -1.2768608934681e-15}, {24, 26, 7.3087610595061e-29},  {24, 40, 5.5414715350778e-17},
    {24, 58, -9.436970724121e-07},
};
constexpr If97Term if97_ideal[] = {
    {0, 0, -9.6927686500217},   {0, 1, 10.086655968018},    {0, -5, -0.005608791128302},
    {0, -4, 0.071452738081455}, {0, -3, -0.40710498223928}, {0, -2, 1.4240819171444},
    {0, -1, -4.383951131945},   {0, 2, -0.28408632460772},  {0, 3, 0.021268463753307},
};

constexpr double R = 0.461526;  // kJ/(kg K)

// The Gibbs function's derivatives in logarithmic form: pi g_pi, pi^2 g_pipi, tau g_tau, ...
struct Gibbs {
    double p = 0.0, pp = 0.0, t = 0.0, tt = 0.0, pt = 0.0;
};

// Adds n a^I b^J; da and db are the derivatives of ln a by ln pi and of ln b by ln tau.
template <std::size_t count>
void add(Gibbs& g, const If97Term (&terms)[count], double a, double da, double b, double db) {
    for (const If97Term& k : terms) {
        const double term = k.n * std::pow(a, k.I) * std::pow(b, k.J);
        const double by_p = k.I * da, by_t = k.J * db;
        g.p += term * by_p;
        g.pp += term * by_p * (k.I - 1) * da;
        g.t += term * by_t;
        g.tt += term * by_t * (k.J - 1) * db;
        g.pt += term * by_p * by_t;
    }
}

If97 properties(const Gibbs& g, double T, double p) {
    const double v = g.p * R * T / p / 1000.0;
    const double thermal = g.p - g.pt;
    const double w2 = 1000.0 * R * T * g.p * g.p / (thermal * thermal / g.tt - g.pp);
    return {1.0 / v, g.t * R * T, w2 / (p * 1e6 * v)};
}

bool near(double value, double expected) { return std::fabs(value - expected) < 1e-8 * expected; }

}  // namespace

If97 if97_liquid(double T, double p) {
    const double pi = p / 16.53, tau = 1386.0 / T;
    Gibbs g;
    add(g, if97_region1, 7.1 - pi, -pi / (7.1 - pi), tau - 1.222, tau / (tau - 1.222));
    return properties(g, T, p);
}

If97 if97_steam(double T, double p) {
    const double pi = p, tau = 540.0 / T;
    Gibbs g;
    g.p = 1.0;
    g.pp = -1.0;
    add(g, if97_ideal, 1.0, 0.0, tau, 1.0);
    add(g, if97_region2, pi, 1.0, tau - 0.5, tau / (tau - 0.5));
    return properties(g, T, p);
}

bool if97_verified() {
    const If97 water = if97_liquid(300.0, 3.0);
    const If97 steam = if97_steam(300.0, 0.0035);
    const auto w = [](const If97& s, double p) { return std::sqrt(s.kappa * p * 1e6 / s.rho_kgm3); };
    return near(1.0 / water.rho_kgm3, 0.100215168e-2) && near(water.h_kJ_kg, 0.115331273e3) &&
           near(w(water, 3.0), 0.150773921e4) && near(1.0 / steam.rho_kgm3, 0.394913866e2) &&
           near(steam.h_kJ_kg, 0.254991145e4) && near(w(steam, 0.0035), 0.427920172e3);
}

}  // namespace kalorfix::bench
