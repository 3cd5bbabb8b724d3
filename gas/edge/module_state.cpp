// SPDX-License-Identifier: MIT
// The module state of the gas methods: its one definition.
#include "gas/edge/module_state.h"

#include <algorithm>
#include <numeric>

#include "kalorfix_gas.h"

char PATH_SRAM_FOR_LOADTABL[100];
char Gas_Not_Init;

float *V_Mi, *Roki, *Tki, *FPi, *Lij, *Xij, *Akl, *Bkl;
float *Eij_, *Uij, *Kij, *Gij_, *an, *bn, *cn, *kn, *un, *gn, *qn, *fn;
float *Mi, *Zci, *Rocui, *Bi, *Ei, *Ki, *Gi, *Qi, *Fi;
float *L1ij, *B1ij;

float Xi[15];
short Index[15];
short NumXi;
float Tmp_Xi[8];
float C[53];
float B[15];
float EIJM[15][15];
float GIJM[15][15];
float Ckl[10][8];
float T, P, DeltaP, Z, K, Roc, Xa, Xy, FP, Tnk, Pnk, Tn, Rom, Ron;
char VNIC_FLAG;

float Mu, kk, Ro, SM;
char Plotnomer;
float qmi, qoi, qci;

const float Tc = 293.15F;
const float Pc = 0.101325F;
const float R = kalorfix::gas::molar_gas_constant;

namespace kalorfix::gas::edge {

constexpr std::array<Block, block_count> blocks{{
    {&V_Mi, "V_Mi", 8},  {&Roki, "Roki", 8},   {&Tki, "Tki", 8},      {&FPi, "FPi", 8},     {&Lij, "Lij", 64},
    {&Xij, "Xij", 64},   {&Akl, "Akl", 80},    {&Bkl, "Bkl", 80},     {&Eij_, "Eij_", 225}, {&Uij, "Uij", 225},
    {&Kij, "Kij", 225},  {&Gij_, "Gij_", 225}, {&an, "an", 53},       {&bn, "bn", 53},      {&cn, "cn", 53},
    {&kn, "kn", 53},     {&un, "un", 53},      {&gn, "gn", 53},       {&qn, "qn", 53},      {&fn, "fn", 53},
    {&Mi, "Mi", 15},     {&Zci, "Zci", 15},    {&Rocui, "Rocui", 15}, {&Bi, "Bi", 15},      {&Ei, "Ei", 15},
    {&Ki, "Ki", 15},     {&Gi, "Gi", 15},      {&Qi, "Qi", 15},       {&Fi, "Fi", 15},      {&L1ij, "L1ij", 88},
    {&B1ij, "B1ij", 48},
}};

static_assert(std::accumulate(blocks.begin(), blocks.end(), std::size_t{0},
                              [](std::size_t sum, const Block& block) { return sum + block.values; }) ==
              file_values);

void store(const Composition& gas) {
    std::copy(gas.x.begin(), gas.x.end(), Xi);
    for (std::size_t n = 0; n < gas.count; ++n) Index[n] = static_cast<short>(gas.present[n]);
    NumXi = static_cast<short>(gas.count);
}

Composition working_composition() {
    Composition gas;
    std::copy(std::begin(Xi), std::end(Xi), gas.x.begin());
    const std::size_t listed = NumXi < 0 ? 0 : std::min(static_cast<std::size_t>(NumXi), component_count);
    for (std::size_t n = 0; n < listed; ++n)
        if (Index[n] >= 0 && static_cast<std::size_t>(Index[n]) < component_count)
            gas.present[gas.count++] = static_cast<std::size_t>(Index[n]);
    return gas;
}

}  // namespace kalorfix::gas::edge
