#define _GNU_SOURCE
#include "workplace.h"

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

static char root[] = "/tmp/kalorfix-host-XXXXXX";
static pid_t maker;

static const char* const entries[] = {"tornkntr.ini", "numbers.ini", "gas.dat", "dat/timewait.dat", "dat", ""};

/* The stamp of 2038-01-19: no downtime before that. */
static const char stamp[] = "\xFF\xFF\xFF\x7F\0\0\0\0\0\0\0";

static const char numbers[] =
    "[NUMBERS] : decimal points, whatever the host's locale says\n"
    "half = 0.5\nthird = 0.333333333333333333333\nmany = 12345678.87654321\nsmall = "
    "0.00000000000000000001234567\n"
    "denormal = 0.000000000000000000000000000000000000000012345\n"
    "large = 340282346638528859811704183484516925440\nnegative = -273.15\ncomma = 1,5\nbare = .25\n"
    "exact = 16777217\nexponents = 1.5e3\n";

static void path_of(char* path, const char* entry) { snprintf(path, 120, "%s/%s", root, entry); }

static void remove_all(void) {
    char path[120];
    if (getpid() != maker) return;
    for (size_t k = 0; k < sizeof entries / sizeof *entries; ++k) {
        path_of(path, entries[k]);
        remove(path);
    }
}

static int write_file(const char* entry, const char* text, size_t length) {
    char path[120];
    path_of(path, entry);
    FILE* const file = fopen(path, "wb");
    if (!file) return 1;
    const size_t written = fwrite(text, 1, length, file);
    return fclose(file) != 0 || written != length;
}

int workplace_make(const char* gas_data) {
    static const char settings[] = "[TORNOL]\nNum_gas_trub = 7 : pipelines\n";
    char path[120];
    maker = getpid();
    int failed = !mkdtemp(root);
    if (!failed) atexit(remove_all);
    path_of(path, "dat");
    failed = failed || mkdir(path, 0700) != 0 || write_file("tornkntr.ini", settings, sizeof settings - 1) ||
             write_file("numbers.ini", numbers, sizeof numbers - 1) ||
             write_file("dat/timewait.dat", stamp, sizeof stamp);
    path_of(path, "gas.dat");
    failed = failed || symlink(gas_data, path) != 0;
    if (failed) {
        fprintf(stderr, "%s: %s\n", root, strerror(errno));
        return 1;
    }
    setenv("SETTINGS", root, 1);
    setenv("SYSTEM", root, 1);
    setenv("PATHDB", root, 1);
    return 0;
}
