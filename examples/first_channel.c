// SPDX-License-Identifier: MIT
/* A first host: one channel of natural gas, the total and the hours of its standard volume, kept
 * across a restart.
 *
 *   cc -std=c99 -D_POSIX_C_SOURCE=200112L -Iinclude examples/first_channel.c build/kalorfix.so \
 *       -Wl,-rpath,$PWD/build -o first_channel
 *   SETTINGS=DIRECTORY_OF_tornkntr.ini ./first_channel FILE_OF_THE_TOTALS
 *
 * docs/first_channel.md goes through it. The readings are made up.
 */
#include <errno.h>
#include <stdio.h>
#include <unistd.h>

#include "kalorfix.h"

enum { channel = 1, standard_volume = 3, hour = 0, exponent = 0 };

/* ---- A flow ---------------------------------------------------------------------------------- */

static int set_up(void) {
    enum { by_material = 1 };
    char status;
    mg_init_tr(channel, KALORFIX_CLASS_1, KALORFIX_ORIFICE_FLANGE,  // class 1: solved to 1e-5
               by_material, 7, 32,                                  // codes of pipe and plate
               100, 50,                                             // diameters at 20 degC, mm
               0.05F,                                               // roughness of the pipe, mm
               0.05F, 0, 1,  // edge: first radius, mm; 0: its mean between checks; years between
               0, &status);
    return status == 1;
}

/* degC, Pa absolute, Pa. */
struct reading {
    float t, p, dp;
};

/* Your transmitters. One that failed gives a NaN: the cycle is then refused. */
static struct reading read_transmitters(void) { return (struct reading){15, 500e3F, 20e3F}; }

/* The flow at standard conditions, m3/h; gives the step that was refused, or NULL. */
static const char* flow(struct reading in, float* q_c) {
    const float rho_c = 0.6799F, n2 = 0.8858F, co2 = 0.0668F, cut_off_Pa = 100;
    char status;
    float rho;
    *q_c = 0;
    mg_param_gs(channel, in.t, in.p, 0, 0,  // no liquid column at the transmitter
                KALORFIX_GERG91, 0,         // by density: of the composition two contents, mol %
                0, 0, 0, 0, 0, 0, 0, 0, 0, 0, n2, co2, 0, 0, 0,
                rho_c,  // density at standard conditions, kg/m3
                &status, NULL, NULL, NULL);
    if (status != 1) return "state";
    mg_tf_param(channel, 0, 0, 0, &status, &rho, NULL, NULL, NULL, NULL);
    if (status != 1) return "properties";
    mg_param_tr(channel, &status, NULL, NULL, NULL, NULL, NULL);
    if (status != 1) return "geometry";
    /* calc 0: the pipe rests, and its time counts. Of the flows the one at standard conditions. */
    const char calc = in.dp < cut_off_Pa ? 0 : 1;
    mg_mgn_param(channel, calc, in.dp, rho, rho_c, 0, &status,  // k 0: no energy
                 NULL, NULL, q_c, NULL, NULL, NULL, NULL, NULL);
    return calc && status != 1 ? "flow" : NULL;
}

/* ---- Total and hour -------------------------------------------------------------------------- */

/* As the library handed them out: the register, m3; of the hour its seconds, the register at its
 * start, and what the hour before it held. */
struct kept {
    float total, seconds, start, last;
};

/* After every cycle, a refused one too: its time is passed over. Status 0 changes nothing. */
static void totalise(struct kept* k) {
    char status;
    float total, seconds, start, last;
    mg_int_param(channel, standard_volume, 0, k->total, 0, exponent, &status, &total, NULL, NULL);
    if (status != 1) return;
    k->total = total;
    mg_int_param_1(channel, standard_volume, hour, k->seconds, k->start, k->last,  // as it was kept
                   &status, &seconds, &start, &last);
    if (status != 1) return;
    if (seconds <= k->seconds) printf("hour closed: %.2f m3\n", (double)last);
    k->seconds = seconds, k->start = start, k->last = last;
}

/* ---- The file -------------------------------------------------------------------------------- */

/* Whole or not at all, whenever the power fails. Nine digits give a float back exactly. */
static int save(const char* name, const struct kept* k) {
    char part[200];
    if (snprintf(part, sizeof part, "%s.part", name) >= (int)sizeof part) return 0;
    FILE* const file = fopen(part, "w");
    if (!file) return 0;
    const double total = (double)k->total, seconds = (double)k->seconds;
    const double start = (double)k->start, last = (double)k->last;
    int good = fprintf(file, "%.9g %.9g %.9g %.9g\n", total, seconds, start, last) > 0;
    good = good && fflush(file) == 0 && fsync(fileno(file)) == 0;
    return (fclose(file) == 0) & good && rename(part, name) == 0;
}

static int within(float value, float most) { return value >= 0 && value <= most; }

/* 1 read, 0 no such file, -1 it holds what cannot be: nobody knows the total then. */
static int load(const char* name, struct kept* k) {
    FILE* const file = fopen(name, "r");
    if (!file) return errno == ENOENT ? 0 : -1;
    char end = 0;
    int good = fscanf(file, "%f %f %f", &k->total, &k->seconds, &k->start) == 3;
    good = good && fscanf(file, "%f%c", &k->last, &end) == 2 && end == '\n';
    fclose(file);
    good = good && within(k->total, 1e6F) && within(k->seconds, 3600);
    good = good && within(k->start, 1e6F) && within(k->last, 1e6F);
    return good ? 1 : -1;
}

/* ---- Start and loop -------------------------------------------------------------------------- */

int main(int argc, char** argv) {
    if (argc != 2) return fprintf(stderr, "first_channel FILE_OF_THE_TOTALS\n"), 2;
    setvbuf(stdout, NULL, _IOLBF, 0);
    struct kept kept = {0, 0, 0, 0};
    const int found = load(argv[1], &kept);
    if (found < 0) return fprintf(stderr, "%s cannot be read: restore it by hand\n", argv[1]), 1;

    if (Init() != 1) return fprintf(stderr, "the library cannot be initialised\n"), 1;
    ProstoyTime = 0; /* the time that the program did not run is not filled in */
    if (!set_up()) return fprintf(stderr, "a constant of the pipeline is out of range\n"), 1;

    printf("%s: %.2f m3\n", found ? "goes on" : "new", (double)kept.total);
    for (;;) {
        sleep(1);
        float q_c;
        const char* const refused = flow(read_transmitters(), &q_c);
        if (refused) printf("refused: %s\n", refused);
        totalise(&kept);
        if (!save(argv[1], &kept)) perror(argv[1]);
        const double total = (double)kept.total, seconds = (double)kept.seconds;
        printf("%.1f m3/h, total %.2f m3, hour %.0f s\n", (double)q_c, total, seconds);
    }
}
