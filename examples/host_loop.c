// SPDX-License-Identifier: MIT
/* The host's side of a gas channel and a steam channel: library loaded, start, cycles with totals and intervals, registers
 * that outlive a restart, a stamp for the downtime, orderly end.
 *
 *   cc -std=c99 -D_POSIX_C_SOURCE=200112L -Iinclude examples/host_loop.c -ldl -lm -o host_loop
 *   ./host_loop build/release/kalorfix.so build/release [DATA_DIRECTORY [CYCLES [PERIOD_MS]]]
 *
 * The readings are made up, one of them broken. SIGTERM and SIGINT end the loop after the cycle at hand.
 */
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <math.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include "kalorfix.h"

/* ---- The library: the header declares the functions, the loader finds them --------------------------------------- */

static struct {
    __typeof__(&Init) Init;
    __typeof__(&Done) Done;
    __typeof__(&mg_init_tr) mg_init_tr, mt_init_tr;
    __typeof__(&mg_param_gs) mg_param_gs;
    __typeof__(&mg_tf_param) mg_tf_param;
    __typeof__(&mt_param_tn) mt_param_tn;
    __typeof__(&mt_tf_param) mt_tf_param;
    __typeof__(&mg_param_tr) mg_param_tr, mt_param_tr;
    __typeof__(&mg_mgn_param) mg_mgn_param;
    __typeof__(&mt_mgn_param) mt_mgn_param;
    __typeof__(&mg_int_param) mg_int_param, mt_int_param;
    __typeof__(&mg_int_param_1) mg_int_param_1, mt_int_param_1;
    double* ProstoyTime;
    const char* Gas_Not_Init;
} lib;

static void* find(void* handle, const char* name) {
    void* const symbol = dlsym(handle, name);
    if (!symbol) fprintf(stderr, "the library does not export %s\n", name), exit(1);
    return symbol;
}
#define BIND(name) *(void**)&lib.name = find(handle, #name)

static void* load_library(const char* file) {
    void* const handle = dlopen(file, RTLD_NOW | RTLD_LOCAL);
    if (!handle) fprintf(stderr, "%s\n", dlerror()), exit(1);
    BIND(Init), BIND(Done), BIND(mg_init_tr), BIND(mt_init_tr), BIND(mg_param_gs), BIND(mg_tf_param);
    BIND(mt_param_tn), BIND(mt_tf_param), BIND(mg_param_tr), BIND(mt_param_tr), BIND(mg_mgn_param);
    BIND(mt_mgn_param), BIND(mg_int_param), BIND(mt_int_param), BIND(mg_int_param_1), BIND(mt_int_param_1);
    lib.ProstoyTime = find(handle, "ProstoyTime");
    lib.Gas_Not_Init = find(handle, "Gas_Not_Init");
    return handle;
}

/* ---- Files of the data directory ------------------------------------------------------------------------------------ */

enum { hour, day, interval_sets };
enum { gas_integrators = 4, heat_integrators = 3, total_integrators = gas_integrators + heat_integrators };

/* What the host keeps of one integrator, as the library handed it out; the register counts 10^exp10 of its unit. */
struct reg {
    short exp10;
    float total;
    struct {
        float seconds, start, result;
    } interval[interval_sets];
};

/* gas: mass t, volume m3, standard volume m3, energy GJ; heat carrier: mass t, volume m3, heat GJ. */
struct registers {
    struct reg gas[gas_integrators], heat[heat_integrators];
};

static char data_directory[70] = ".";

static const char* in_data(char* path, size_t size, const char* name) {
    snprintf(path, size, "%s/%s", data_directory, name);
    return path;
}

/* Complete or not at all, whenever the power fails. */
static int replace_file(const char* name, const void* bytes, size_t size) {
    char path[100], part[110];
    snprintf(part, sizeof part, "%s.part", in_data(path, sizeof path, name));
    FILE* const file = fopen(part, "wb");
    if (!file) return 0;
    const int written = fwrite(bytes, 1, size, file) == size && fflush(file) == 0 && fsync(fileno(file)) == 0;
    return (fclose(file) == 0) & written && rename(part, path) == 0;
}

/* The downtime of the next start counts from here: seconds since the Epoch, little-endian, and eight bytes that do not count. */
static int write_stamp(void) {
    unsigned char stamp[12] = {0};
    const unsigned long now = (unsigned long)time(NULL);
    for (int k = 0; k < 4; ++k) stamp[k] = (unsigned char)(now >> (8 * k) & 0xFF);
    return replace_file("dat/timewait.dat", stamp, sizeof stamp);
}

/* Nine digits give a float back exactly; fewer would lose the increments. */
static int save_registers(const struct registers* r) {
    char text[total_integrators * 128];
    size_t length = 0;
    for (int k = 0; k < total_integrators; ++k) {
        const struct reg* const one = k < gas_integrators ? &r->gas[k] : &r->heat[k - gas_integrators];
        length +=
            (size_t)snprintf(text + length, sizeof text - length, "%hd %.9g", one->exp10, (double)one->total);
        for (int set = 0; set < interval_sets; ++set)
            length += (size_t)snprintf(text + length, sizeof text - length, " %.9g %.9g %.9g",
                                       (double)one->interval[set].seconds, (double)one->interval[set].start,
                                       (double)one->interval[set].result);
        text[length++] = '\n';
    }
    return replace_file("registers.txt", text, length);
}

/* Not a number fails too. */
static int within(float value, float most) { return value >= 0 && value <= most; }

static int can_be(const struct reg* r, short exp10) {
    const float wrap = 1e6F, length_s[interval_sets] = {3600, 86400};
    int good = exp10 == r->exp10 && within(r->total, wrap);
    for (int set = 0; set < interval_sets; ++set)
        good = good && within(r->interval[set].seconds, length_s[set]) &&
               within(r->interval[set].start, wrap) && within(r->interval[set].result, wrap);
    return good;
}

/* 1 read, 0 there is no such file, -1 it holds what cannot be: then nobody knows the totals, and zeros would be a lie. */
static int load_registers(struct registers* r) {
    char path[100];
    FILE* const file = fopen(in_data(path, sizeof path, "registers.txt"), "r");
    if (!file) return errno == ENOENT ? 0 : -1;
    int good = 1;
    for (int k = 0; k < total_integrators && good; ++k) {
        struct reg* const one = k < gas_integrators ? &r->gas[k] : &r->heat[k - gas_integrators];
        short exp10 = -1;
        int count = fscanf(file, "%hd %f", &exp10, &one->total);
        for (int set = 0; set < interval_sets; ++set)
            count += fscanf(file, "%f %f %f", &one->interval[set].seconds, &one->interval[set].start,
                            &one->interval[set].result);
        good = count == 2 + 3 * interval_sets && getc(file) == '\n' && can_be(one, exp10);
    }
    fclose(file);
    return good ? 1 : -1;
}

/* ---- Readings ------------------------------------------------------------------------------------------------------- */

/* In the units of the library: degC, Pa absolute, Pa. */
struct reading {
    float t, p, dp;
};

static struct reading read_gas(int cycle) {
    return (struct reading){15.0F, 5.5e6F, 25000.0F + 500.0F * (float)(cycle % 5)};
}

/* A transmitter fails now and then. */
static struct reading read_steam(int cycle) {
    return (struct reading){300.0F, 1.2e6F, cycle % 10 == 3 ? NAN : 40000.0F + 500.0F * (float)(cycle % 5)};
}

/* A broken reading costs the whole cycle: no temperature stops it at the first step. */
static struct reading checked(struct reading in) {
    if (!isfinite(in.t) || !isfinite(in.p) || !isfinite(in.dp)) in.t = NAN;
    return in;
}

/* Below the range of the transmitter there is no flow: calc 0 gives zero flows, and the time counts. */
static char worth_computing(struct reading in) {
    const float cut_off_Pa = 100.0F;
    return in.dp < cut_off_Pa ? 0 : 1;
}

/* ---- Cycles --------------------------------------------------------------------------------------------------------- */

enum { gas_channel = 1, contents_channel = 2, steam_channel = 1 };

/* Of each integrator, per hour: the largest flow that can come, and the one that fills a downtime in. */
struct flow {
    double largest, substitute;
};
static const struct flow gas_flows[gas_integrators] = {
    {200, 100}, {5000, 2500}, {300000, 150000}, {10000, 5000}};
static const struct flow steam_flows[heat_integrators] = {{80, 50}, {20000, 10000}, {250, 150}};

/* What is longer is a clock that lost its battery. */
static const double longest_downtime_min = 7.0 * 24 * 60;

/* The least exponent with which a day and a downtime in it stay below 10^6; else the amount of an interval lacks 10^6. */
static short exponent_for(struct flow of) {
    double most = of.largest * 24 + of.substitute * longest_downtime_min / 60;
    short exp10 = 0;
    for (; most >= 1e6; most /= 10) ++exp10;
    return exp10;
}

static double in_units(const struct reg* r, float value) { return (double)value * pow(10, r->exp10); }

/* Registers change on status 1 only: on status 0 the intervals come back as zeros. */
static void totalise(__typeof__(&mg_int_param) int_param, __typeof__(&mg_int_param_1) int_param_1, int channel,
                     int integrators, const struct flow* flows, struct reg* regs) {
    for (int k = 0; k < integrators; ++k) {
        const unsigned short number = (unsigned short)(k + 1);
        struct reg* const r = &regs[k];
        char status;
        float total, part, downtime, seconds, start, result;
        int_param(channel, number, 0, r->total, (float)flows[k].substitute, r->exp10, &status, &total, &part,
                  &downtime);
        if (status != 1) continue;
        r->total = total;
        if (downtime > 0)
            printf("channel %d integrator %d: %.6g for %.2f minutes of downtime\n", channel, k + 1,
                   in_units(r, part), (double)downtime);
        for (unsigned short set = hour; set <= day; ++set) {
            int_param_1(channel, number, set, r->interval[set].seconds, r->interval[set].start,
                        r->interval[set].result, &status, &seconds, &start, &result);
            if (status != 1) continue;
            /* Cycles are two ticks apart, so that time has passed: seconds that did not grow began anew. */
            if (seconds <= r->interval[set].seconds)
                printf("channel %d integrator %d: %s closed with %.6g\n", channel, k + 1,
                       set == hour ? "hour" : "day", in_units(r, result));
            r->interval[set].seconds = seconds;
            r->interval[set].start = start;
            r->interval[set].result = result;
        }
    }
}

/* Each function gives the step that was refused, or NULL. */
static const char* gas_flow(struct reading in) {
    enum { mole_percent = 0 };
    char status;
    float sum, K, rho_c, rho, mu, kappa, lower_heat, higher_heat;
    float D, d, beta, E, K_p, q_m, q_v, q_c, q_e, K_sh, C, Re, epsilon;
    const float nitrogen = 0.3F, carbon_dioxide = 0.6F;

    /* AGA8-92DC takes viscosity and exponent with the contents that the last method by density left. */
    lib.mg_param_gs(contents_channel, in.t, in.p, 0, 0, KALORFIX_GERG91, mole_percent, 0, 0, 0, 0, 0, 0, 0, 0,
                    0, 0, nitrogen, carbon_dioxide, 0, 0, 0, 0.7F, &status, &sum, &K, &rho_c);

    lib.mg_param_gs(gas_channel, in.t, in.p, 0, 0, KALORFIX_AGA8_92DC, mole_percent, 96.5F, 1.8F, 0.45F, 0.1F,
                    0.1F, 0.03F, 0.05F, 0.07F, 0, 0, nitrogen, carbon_dioxide, 0, 0, 0, 0, &status, &sum, &K,
                    &rho_c);
    if (status != 1) return "state";
    /* No other gas calculation between these two. */
    lib.mg_tf_param(gas_channel, 0, 0, 0, &status, &rho, &mu, &kappa, &lower_heat, &higher_heat);
    if (status != 1) return "properties";
    lib.mg_param_tr(gas_channel, &status, &D, &d, &beta, &E, &K_p);
    if (status != 1) return "geometry";
    const char calc = worth_computing(in);
    lib.mg_mgn_param(gas_channel, calc, in.dp, rho, rho_c, lower_heat, &status, &q_m, &q_v, &q_c, &q_e, &K_sh,
                     &C, &Re, &epsilon);
    return calc && status != 1 ? "flow" : NULL;
}

static const char* steam_flow(struct reading in) {
    const float tolerance_Pa = 1000, tolerance_K = 0.5F;
    char status;
    short phase;
    float ps, ts, rho, mu, h, kappa, D, d, beta, E, K_p, q_m, q_v, q_h, K_sh, C, Re, epsilon;

    lib.mt_param_tn(steam_channel, in.t, in.p, 0, 0, tolerance_Pa, tolerance_K, &status, &phase, &ps, &ts);
    if (status != 1) return "state";
    lib.mt_tf_param(steam_channel, 0, 0, 0, &status, &rho, &mu, &h, &kappa);
    if (status != 1) return "properties";
    lib.mt_param_tr(steam_channel, &status, &D, &d, &beta, &E, &K_p);
    if (status != 1) return "geometry";
    const char calc = worth_computing(in);
    lib.mt_mgn_param(steam_channel, calc, in.dp, rho, h, &status, &q_m, &q_v, &q_h, &K_sh, &C, &Re, &epsilon);
    return calc && status != 1 ? "flow" : NULL;
}

/* The totals come after every cycle, refused ones included: that passes their time over. */
static void run_cycle(int cycle, struct registers* r) {
    const char* refused = gas_flow(checked(read_gas(cycle)));
    if (refused) printf("cycle %d: gas refused at %s\n", cycle, refused);
    totalise(lib.mg_int_param, lib.mg_int_param_1, gas_channel, gas_integrators, gas_flows, r->gas);

    refused = steam_flow(checked(read_steam(cycle)));
    if (refused) printf("cycle %d: steam refused at %s\n", cycle, refused);
    totalise(lib.mt_int_param, lib.mt_int_param_1, steam_channel, heat_integrators, steam_flows, r->heat);
}

/* ---- Start, loop, end ----------------------------------------------------------------------------------------------- */

static volatile sig_atomic_t ending = 0;
static void end_after_this_cycle(int signal_number) { (void)signal_number, ending = 1; }

static void set_up_channels(void) {
    enum { by_material = 1 };
    char gas, contents, steam;
    lib.mg_init_tr(gas_channel, KALORFIX_CLASS_1, KALORFIX_ORIFICE_FLANGE, by_material, 7, 32, 400, 220, 0.05F,
                   0.05F, 0, 1, 0, &gas);
    lib.mg_init_tr(contents_channel, KALORFIX_CLASS_1, KALORFIX_ORIFICE_FLANGE, by_material, 7, 32, 400, 220,
                   0.05F, 0.05F, 0, 1, 0, &contents);
    lib.mt_init_tr(steam_channel, KALORFIX_CLASS_1, KALORFIX_NOZZLE_ISA1932, by_material, 7, 32, 300, 180, 0.1F,
                   0, 0, 1, 0, &steam);
    if (gas != 1 || contents != 1 || steam != 1) fprintf(stderr, "pipeline constants refused\n"), exit(1);
}

static void print_registers(const char* when, const struct registers* r) {
    printf("%s: gas %.9g m3, hour %.9g s; steam %.9g t, hour %.9g s\n", when,
           in_units(&r->gas[2], r->gas[2].total), (double)r->gas[2].interval[hour].seconds,
           in_units(&r->heat[0], r->heat[0].total), (double)r->heat[0].interval[hour].seconds);
}

int main(int argc, char** argv) {
    if (argc < 3) return fprintf(stderr, "host_loop LIBRARY SYSTEM_DIR [DATA_DIR [CYCLES [PERIOD_MS]]]\n"), 2;
    if (argc > 3 && strlen(argv[3]) >= sizeof data_directory) return fprintf(stderr, "path too long\n"), 2;
    if (argc > 3) strcpy(data_directory, argv[3]);
    const int cycles = argc > 4 ? atoi(argv[4]) : 10;
    const long two_ticks_ms = 20, asked_ms = argc > 5 ? atol(argv[5]) : two_ticks_ms;
    const long period_ms = asked_ms < two_ticks_ms ? two_ticks_ms : asked_ms;

    /* The library reads its directories when it is loaded. */
    setenv("SYSTEM", argv[2], 1);
    setenv("SETTINGS", argv[2], 1);
    setenv("PATHDB", data_directory, 1);

    struct registers regs;
    memset(&regs, 0, sizeof regs);
    for (int k = 0; k < gas_integrators; ++k) regs.gas[k].exp10 = exponent_for(gas_flows[k]);
    for (int k = 0; k < heat_integrators; ++k) regs.heat[k].exp10 = exponent_for(steam_flows[k]);
    const int found = load_registers(&regs);
    if (found < 0) return fprintf(stderr, "the registers cannot be read: restore them by hand\n"), 1;

    /* Without a stamp the downtime would count from 1970; an older one must stay until Init has read it. Registers are kept
     * before the stamp, so that a stamp without them means that they were lost. */
    char path[100];
    struct stat about;
    mkdir(in_data(path, sizeof path, "dat"), 0755);
    const int stamped = stat(in_data(path, sizeof path, "dat/timewait.dat"), &about) == 0;
    if (stamped && !found) return fprintf(stderr, "a stamp, but no registers: restore them by hand\n"), 1;
    if ((!found && !save_registers(&regs)) || (!stamped && !write_stamp())) return perror(data_directory), 1;

    void* const library = load_library(argv[1]);
    if (lib.Init() != 1) return fprintf(stderr, "the library cannot be initialised\n"), 1;
    if (*lib.Gas_Not_Init != 1) return fprintf(stderr, "no gas.dat in %s\n", argv[2]), 1;
    /* From January 2038 on the stamp reads 2^32 seconds too old. */
    *lib.ProstoyTime = fmod(*lib.ProstoyTime, 4294967296.0 / 60);
    if (*lib.ProstoyTime > longest_downtime_min) {
        printf("a downtime of %.0f minutes is not filled in\n", *lib.ProstoyTime);
        *lib.ProstoyTime = 0;
    }
    set_up_channels();

    struct sigaction action;
    memset(&action, 0, sizeof action);
    action.sa_handler = end_after_this_cycle;
    sigaction(SIGTERM, &action, NULL);
    sigaction(SIGINT, &action, NULL);

    print_registers(found ? "registers go on" : "new registers", &regs);
    for (int cycle = 0; cycle < cycles && !ending; ++cycle) {
        const struct timespec period = {period_ms / 1000, period_ms % 1000 * 1000000};
        nanosleep(&period, NULL);
        run_cycle(cycle, &regs);
        /* The stamp last: a failure in between counts one cycle twice, the other order would lose it. */
        if (!save_registers(&regs) || !write_stamp()) perror("cannot keep the registers");
    }
    print_registers("registers kept", &regs);
    lib.Done();
    return dlclose(library);
}
