/* A host under a locale with a decimal comma. LC_ALL has to name one. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <locale.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "host.h"

enum { of_the_process, of_the_thread };

const struct host_mode host_modes[] = {{"locale of the process", RTLD_NOW | RTLD_LOCAL, 1, 1, of_the_process},
                                       {"locale of the thread", RTLD_NOW | RTLD_LOCAL, 1, 1, of_the_thread}};
const int host_mode_count = 2;

static int comma_in_force(void) {
    char text[10];
    snprintf(text, sizeof text, "%.1f", 0.5);
    return strcmp(localeconv()->decimal_point, ",") == 0 && strcmp(text, "0,5") == 0 && strtod("0,5", NULL) > 0;
}

static int want_comma(void) {
    if (comma_in_force()) return 0;
    fprintf(stderr, "the locale %s has no decimal comma\n", setlocale(LC_ALL, NULL));
    return 1;
}

int host_ready(void) { return 0; }

int host_before(const struct host_mode* mode) {
    if (mode->setting == of_the_process) {
        if (!setlocale(LC_ALL, "")) return want_comma();
    } else {
        const locale_t locale = newlocale(LC_ALL_MASK, "", (locale_t)0);
        if (!locale || !uselocale(locale)) return want_comma();
    }
    return want_comma();
}

int host_after(const struct host_mode* mode) {
    (void)mode;
    return want_comma();
}
