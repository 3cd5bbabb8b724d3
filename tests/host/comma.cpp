// SPDX-License-Identifier: MIT
// A host under a locale with a decimal comma. LC_ALL has to name one.
#include <dlfcn.h>

#include <clocale>
#include <cstdio>
#include <cstring>

extern "C" {
#include "host.h"

enum { of_the_process, of_the_thread };
const host_mode host_modes[] = {{"locale of the process", RTLD_NOW | RTLD_LOCAL, of_the_process},
                                {"locale of the thread", RTLD_NOW | RTLD_LOCAL, of_the_thread}};
const int host_mode_count = 2;

int host_after(const host_mode*) {
    char text[10];
    std::snprintf(text, sizeof text, "%.1f", 0.5);
    const int gone = std::strcmp(text, "0,5");
    if (gone) std::fputs("no decimal comma is in force\n", stderr);
    return gone != 0;
}

int host_before(const host_mode* mode) {
    if (mode->setting == of_the_process) return std::setlocale(LC_ALL, "") ? 0 : 1;
    const locale_t locale = newlocale(LC_ALL_MASK, "", locale_t{});
    return locale && uselocale(locale) ? 0 : 1;
}
}
