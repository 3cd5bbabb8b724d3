/* A program that loads the library in several ways, each in a process of its own, and compares what a session gives with the
 * text that the clean program wrote. What is peculiar about a host is in a file of its own, which defines these. */
#ifndef HOST_HOST_H
#define HOST_HOST_H

struct host_mode {
    const char* name;
    int flags;     /* of dlopen */
    int same;      /* 1: the results are those of the clean program; 0: they differ, or the process ends */
    int own_clock; /* 1: the library asks the times() of this program */
    int setting;   /* for host_before and host_after */
};

extern const struct host_mode host_modes[];
extern const int host_mode_count;

/* The library's file. */
extern const char* host_library;

/* Whether the program is as hostile as it means to be: 0; 1 with a line on standard error; 77 if the machine cannot. */
int host_ready(void);

/* In the process of a mode, before the library is loaded and after it is gone. 0 is success; 77 passes the mode over. */
int host_before(const struct host_mode* mode);
int host_after(const struct host_mode* mode);

/* Sets the clock that the library asks back to where it was at the start. */
void host_restart_clock(void);

enum { host_cannot = 77 };

#endif
