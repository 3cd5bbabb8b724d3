/* The calls of a session, table driven. */
#include <math.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "session.h"

static uint32_t bits(float value) {
    uint32_t word;
    memcpy(&word, &value, sizeof word);
    return word;
}

static unsigned long long double_bits(double value) {
    unsigned long long word;
    memcpy(&word, &value, sizeof word);
    return word;
}

static void put(FILE* out, const char* what, int status, const float* values, int count) {
    fprintf(out, "%s %d", what, status);
    for (int k = 0; k < count; ++k) fprintf(out, " %08x", (unsigned)bits(values[k]));
    fprintf(out, "\n");
}

/* Nothing here computes with fractions: the host may have enabled the trap for inexact results. */

static const struct {
    char fractions; /* 0 mole per cent, 1 volume fractions */
    float x[15];
} gases[] = {
    {0, {96.5F, 1.8F, 0.45F, 0.1F, 0.1F, 0.03F, 0.05F, 0.07F, 0, 0, 0.3F, 0.6F, 0, 0, 0}},
    {1, {0.81212F, 0.04303F, 0.00895F, 0.00152F, 0.00151F, 0, 0, 0, 0, 0, 0.05702F, 0.07585F, 0, 0, 0}},
    {0, {84, 8, 3, 0.8F, 0.6F, 0.25F, 0.25F, 0.2F, 0.1F, 0.05F, 1.5F, 1, 0.1F, 0.05F, 1e-37F}},
};

static const struct {
    float t_C, p_Pa;
} gas_states[] = {{15, 5.5e6F}, {-20, 1.2e5F}, {60, 1.1e7F}, {-23, 2.9e7F}, {200, 5e6F}};

#define COUNT(table) (sizeof(table) / sizeof *(table))

static void module_state(const struct library* l, FILE* out) {
    static const char* const floats[] = {"T",  "P",   "Z",   "K",      "Roc", "Xa",  "Xy",
                                         "FP", "Tnk", "Pnk", "Tn",     "Ro",  "Rom", "Ron",
                                         "SM", "Mu",  "kk",  "DeltaP", "qmi", "qoi", "qci"};
    static const struct {
        const char* name;
        size_t count;
    } lists[] = {{"Xi", 15}, {"Tmp_Xi", 8}, {"C", 53}, {"B", 15}, {"EIJM", 225}, {"GIJM", 225}, {"Ckl", 80}};
    for (size_t k = 0; k < COUNT(floats); ++k)
        put(out, floats[k], 0, (const float*)library_variable(l, floats[k]), 1);
    for (size_t k = 0; k < COUNT(lists); ++k)
        put(out, lists[k].name, 0, (const float*)library_variable(l, lists[k].name), (int)lists[k].count);
    fprintf(out, "NumXi %d VNIC_FLAG %d Plotnomer %d Gas_Not_Init %d Is_already_init %d Num_gas_trub %d\n",
            *(const short*)library_variable(l, "NumXi"), *(const char*)library_variable(l, "VNIC_FLAG"),
            *(const char*)library_variable(l, "Plotnomer"), *(const char*)library_variable(l, "Gas_Not_Init"),
            *(const short*)library_variable(l, "Is_already_init"),
            *(const short*)library_variable(l, "Num_gas_trub"));
}

static void gas_totals(const struct library* l, FILE* out, int channel) {
    for (unsigned short integrator = 1; integrator <= 4; ++integrator) {
        char status = 9;
        float f[6] = {0};
        l->mg_int_param(channel, integrator, 0, 1000, 2, -3, &status, f, f + 1, f + 2);
        l->mg_int_param_1(channel, integrator, 0, 12, 990, 3, &status, f + 3, f + 4, f + 5);
        put(out, "total mg", status, f, 6);
    }
}

static void gas_cycles(const struct library* l, FILE* out) {
    char status = 9;
    for (int channel = 1; channel <= 3; ++channel) {
        l->mg_init_tr(channel, (char)(channel & 1), (short)channel, 1, 7, 32, 400, 220, 0.05F, 0.05F, 0, 1, 0,
                      &status);
        fprintf(out, "mg_init_tr %d %d\n", channel, status);
    }
    for (int method = 0; method < 4; ++method)
        for (size_t g = 0; g < COUNT(gases); ++g)
            for (size_t s = 0; s < COUNT(gas_states); ++s) {
                const int channel = 1 + (int)g;
                const float* const x = gases[g].x;
                float f[16] = {0};
                l->mg_param_gs(channel, gas_states[s].t_C, gas_states[s].p_Pa, 850, 0.5F, (short)method,
                               gases[g].fractions, x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8], x[9],
                               x[10], x[11], x[12], x[13], x[14], 0.7F, &status, f, f + 1, f + 2);
                put(out, "mg_param_gs", status, f, 3);
                l->mg_tf_param(channel, (char)(s & 1), (char)(g & 1), g == 1 ? 0.002F : 0, &status, f, f + 1,
                               f + 2, f + 3, f + 4);
                put(out, "mg_tf_param", status, f, 5);
                module_state(l, out);
                const float rho = f[0];
                l->mg_param_tr(channel, &status, f, f + 1, f + 2, f + 3, f + 4);
                put(out, "mg_param_tr", status, f, 5);
                l->mg_mgn_param(channel, 1, 25000, rho, 0.7F, 34.2F, &status, f, f + 1, f + 2, f + 3, f + 4,
                                f + 5, f + 6, f + 7);
                put(out, "mg_mgn_param", status, f, 8);
                gas_totals(l, out, channel);
            }
}

static void gas_routines(const struct library* l, FILE* out) {
    for (size_t g = 0; g < COUNT(gases); ++g) {
        const float* const x = gases[g].x;
        (gases[g].fractions ? l->PF1_2 : l->PF1_1)(x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8], x[9],
                                                   x[10], x[11], x[12], x[13], x[14]);
        for (size_t m = 0; m < COUNT(l->methods); ++m) {
            short failed = 9;
            float f[3];
            f[0] = l->routines[0](); /* PF2, which the methods by density need */
            f[1] = l->methods[m](285, 10, 4.5F, &failed);
            f[2] = l->density_methods[m & 1](285, 10, 4.5F, x[10], x[11], f[0], &failed);
            put(out, "K", failed, f, 3);
            *(float*)library_variable(l, "qmi") = 12.5F;
            for (size_t r = 0; r < COUNT(l->routines); ++r) {
                const float value = l->routines[r]();
                put(out, "routine", (int)r, &value, 1);
            }
            f[0] = l->PF5(0);
            f[1] = l->NF2_2(30, 288, 4.4F);
            put(out, "PF5 NF2_2", 0, f, 2);
        }
    }
    module_state(l, out);
}

static void steam_cycles(const struct library* l, FILE* out) {
    static const struct {
        float t_C, p_Pa;
    } states[] = {{300, 1.2e6F}, {150, 6e5F}, {150, 476160}, {90, 2e5F},
                  {374, 2.3e7F}, {700, 1e6F}, {20, 5e9F}};
    char status = 9;
    for (int channel = 1; channel <= 3; ++channel) {
        l->mt_init_tr(channel, 0, (short)(1 + 3 * channel), 1, 7, 32, 300, 180, 0.1F, 0, 0, 1, 0, &status);
        fprintf(out, "mt_init_tr %d %d\n", channel, status);
        for (size_t s = 0; s < COUNT(states); ++s) {
            short phase = 9;
            float f[8] = {0};
            l->mt_param_tn(channel, states[s].t_C, states[s].p_Pa, 0.3F, 990, 1000, 0.5F, &status, &phase, f,
                           f + 1);
            if (isnan(f[0])) f[0] = -1; /* the sign of a NaN is nobody's promise */
            fprintf(out, "phase %d\n", phase);
            put(out, "mt_param_tn", status, f, 2);
            l->mt_tf_param(channel, s == 2, 3, 0.25F, &status, f, f + 1, f + 2, f + 3);
            put(out, "mt_tf_param", status, f, 4);
            const float rho = f[0], h = f[2];
            l->mt_param_tr(channel, &status, f, f + 1, f + 2, f + 3, f + 4);
            put(out, "mt_param_tr", status, f, 5);
            l->mt_mgn_param(channel, 1, 40000, rho, h, &status, f, f + 1, f + 2, f + 3, f + 4, f + 5, f + 6);
            put(out, "mt_mgn_param", status, f, 7);
            for (unsigned short integrator = 1; integrator <= 3; ++integrator) {
                l->mt_int_param(channel, integrator, 0, 1000, 2, 0, &status, f, f + 1, f + 2);
                l->mt_int_param_1(channel, integrator, 1, 86399, 10, 3, &status, f + 3, f + 4, f + 5);
                put(out, "total mt", status, f, 6);
            }
        }
    }
}

static void water(const struct library* l, FILE* out) {
    static const double pressures[] = {0, 0.01, 0.07, 0.49, 3.43, 24.01, 99.9, 101};
    for (int t = 0; t <= 800; t += 80)
        for (size_t p = 0; p < COUNT(pressures); ++p) {
            const double t_C = t, p_MPa = pressures[p];
            double d[5] = {0};
            const short mode = (short)(t_C < 300 && p_MPa < 1 ? 3 : 1);
            const int failed = l->t_param_1(t_C, p_MPa, mode, d, d + 1, d + 2, d + 3);
            const int phase = l->t_phase_1(p_MPa, t_C, 0.01, d + 4);
            if (isnan(d[4])) d[4] = -1;
            fprintf(out, "water %d %d", failed, phase);
            for (int k = 0; k < 5; ++k) fprintf(out, " %016llx", double_bits(d[k]));
            fprintf(out, "\n");
        }
}

static void ini(const struct library* l, FILE* out) {
    static const char* const keys[] = {"half",     "third", "many", "small", "denormal",  "large",
                                       "negative", "comma", "bare", "exact", "exponents", "none"};
    union {
        char bytes[512];
        void* aligned;
    } object;
    char file[120], text[1000];
    snprintf(file, sizeof file, "%s/numbers.ini", getenv("SETTINGS"));
    l->ini_make(&object, file, 1);
    fprintf(out, "ini_Open %d\n", l->ini_Open(&object));
    for (size_t k = 0; k < COUNT(keys); ++k) {
        float value = -77;
        short whole = -77;
        const int found = l->ini_float(&object, "NUMBERS", NULL, NULL, keys[k], &value);
        put(out, keys[k], found, &value, 1);
        l->ini_short(&object, "NUMBERS", NULL, NULL, keys[k], &whole);
        text[0] = '\0';
        l->ini_string(&object, "NUMBERS", NULL, NULL, keys[k], text);
        fprintf(out, "%d <%s>\n", whole, text);
    }
    fprintf(out, "ini_Close %d\n", l->ini_Close(&object));
    l->ini_end(&object);
}

void session_calls(const struct library* library, FILE* out) {
    fprintf(out, "total clock %d\n", library->abs_clock());
    gas_cycles(library, out);
    gas_routines(library, out);
    steam_cycles(library, out);
    water(library, out);
    ini(library, out);
}
