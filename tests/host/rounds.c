/* A host that loads the library, uses all of it and unloads it, again and again: nothing stays behind, in memory, in the list
 * of open files or in the results. */
#define _GNU_SOURCE
#include <dirent.h>
#include <dlfcn.h>
#include <malloc.h>
#include <stdio.h>
#include <string.h>

#include "host.h"
#include "session.h"

enum {
    rounds = 100,
    warm_up = 30 /* until the allocator's caches and the loader's tables have their size */
};

static char text[1 << 20], first_text[1 << 20];

static int descriptors(void) {
    int count = 0;
    DIR* const directory = opendir("/proc/self/fd");
    if (!directory) return -1;
    while (readdir(directory)) ++count;
    closedir(directory);
    return count;
}

static int mapped(void) {
    char line[4096];
    int found = 0;
    FILE* const maps = fopen("/proc/self/maps", "r");
    if (!maps) return -1;
    while (fgets(line, sizeof line, maps)) found |= strstr(line, "kalorfix.so") != NULL;
    fclose(maps);
    return found;
}

static int fail(int round, const char* what) {
    fprintf(stderr, "round %d: %s\n", round, what);
    return 1;
}

/* While the library is loaded it has to be seen: otherwise the checks for its absence would mean nothing. */
static int seen_while_loaded(int flags) {
    void* const handle = dlopen(host_library, flags);
    void* const again = dlopen(host_library, RTLD_NOLOAD | RTLD_NOW);
    const int seen = handle && again && mapped() == 1;
    if (again) dlclose(again);
    return handle && dlclose(handle) == 0 && seen;
}

static int one_round(int round, const struct host_mode* mode) {
    /* Every second round leaves Done out. */
    const int finish = round % 2 == 0;
    memset(text, 0, sizeof text);
    FILE* const out = fmemopen(text, sizeof text, "w");
    host_restart_clock();
    const int outcome = out ? session_run(host_library, mode->flags, finish, out) : 1;
    if (!out || fclose(out) != 0 || outcome != 0) return fail(round, "the session failed");
    if (mapped() != 0) return fail(round, "the library is still mapped");
    if (dlopen(host_library, RTLD_NOLOAD | RTLD_NOW)) return fail(round, "the loader still knows the library");
    if (!mode->own_clock) return 0; /* the totals depend on the time */
    if (!finish) strcat(text, "Done 1\n");
    if (round == 0) memcpy(first_text, text, sizeof text);
    return strcmp(first_text, text) == 0 ? 0 : fail(round, "other results than in the first round");
}

const struct host_mode host_modes[] = {
    {"now, local", RTLD_NOW | RTLD_LOCAL, 1, 1, 0},
    {"lazy, global", RTLD_LAZY | RTLD_GLOBAL, 1, 1, 0},
#ifndef NO_DEEP_BINDING
    {"deep binding", RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND, 1, 0, 1},
#endif
};
const int host_mode_count = (int)(sizeof host_modes / sizeof *host_modes);

int host_ready(void) { return 0; }

int host_before(const struct host_mode* mode) {
    size_t in_use = 0;
    int open_files = 0;
    if (!seen_while_loaded(mode->flags)) return fail(0, "the library is not seen while it is loaded");
    for (int round = 0; round < rounds; ++round) {
        if (one_round(round, mode) != 0) return 1;
        if (round < warm_up) {
            in_use = mallinfo2().uordblks;
            open_files = descriptors();
        } else if (mallinfo2().uordblks > in_use) {
            fprintf(stderr, "%zu bytes in use, %zu after the warm-up\n", mallinfo2().uordblks, in_use);
            return fail(round, "memory is lost");
        } else if (descriptors() != open_files) {
            return fail(round, "a file is left open");
        }
    }
    printf("%s: %d rounds, %zu bytes of heap and %d descriptors in the end\n", mode->name, rounds,
           (size_t)mallinfo2().uordblks, open_files - 3);
    fflush(stdout);
    host_restart_clock();
    return 0;
}

int host_after(const struct host_mode* mode) {
    (void)mode;
    return mapped() != 0;
}
