// SPDX-License-Identifier: MIT
/* A program that loads the library in several modes and compares every result, bit for bit, with those of a clean program.
 * What is peculiar about a host is in a file of its own, which defines these. */
#ifndef HOST_HOST_H
#define HOST_HOST_H

struct host_mode {
    const char* name;
    int flags;   /* of dlopen */
    int setting; /* for host_before and host_after */
};
extern const struct host_mode host_modes[];
extern const int host_mode_count;

extern const char* host_library; /* its file */

/* Before the library is loaded and after it is gone: 0; 1 with a line on standard error. */
int host_before(const struct host_mode* mode);
int host_after(const struct host_mode* mode);

#endif
