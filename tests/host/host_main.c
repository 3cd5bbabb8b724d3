/* host_... LIBRARY GAS_DATA REFERENCE [write] */
#define _GNU_SOURCE
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/times.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host.h"
#include "session.h"
#include "workplace.h"

const char* host_library;

/* The library's clock asks times(); this program answers in the C library's place, an hour a call. */
static clock_t now;

clock_t times(struct tms* unused) {
    (void)unused;
    return now += 3600L * sysconf(_SC_CLK_TCK);
}

void host_restart_clock(void) { now = 0; }

static char* read_all(FILE* file) {
    size_t size = 0, room = 1 << 16;
    char* text = malloc(room);
    if (!text || !file) exit(1);
    for (size_t got; (got = fread(text + size, 1, room - size - 1, file)) > 0; size += got)
        if (room - size - 1 == got && !(text = realloc(text, room *= 2))) exit(1);
    text[size] = '\0';
    fclose(file);
    return text;
}

/* The next line to be compared: without a clock of our own the totals depend on the time. */
static const char* next_line(const char* line, int own_clock) {
    while (!own_clock && strncmp(line, "total", 5) == 0) line = strchr(line, '\n') + 1;
    return line;
}

/* The number of the first line that differs, 0 if none does. */
static int first_difference(const char* expected, const char* got, int own_clock) {
    for (int number = 1;; ++number) {
        expected = next_line(expected, own_clock);
        got = next_line(got, own_clock);
        const char* const end = strchr(expected, '\n');
        if (!end) return *got == '\0' ? 0 : number;
        const size_t length = (size_t)(end - expected) + 1;
        if (strncmp(expected, got, length) != 0) {
            fprintf(stderr, "  expected %.*s\n  got      %.*s\n", (int)length - 1, expected,
                    (int)strcspn(got, "\n"), got);
            return number;
        }
        expected += length;
        got += length;
    }
}

/* Whether the calls compute anything: a text of refusals would be the same for every host. */
static int is_sound(const char* text) {
    static const struct {
        const char* line;
        int at_least;
    } wanted[] = {{"\nmg_param_gs 1 ", 48},   {"\nmg_tf_param 1 ", 48}, {"\nmg_mgn_param 1 ", 48},
                  {"\nmt_mgn_param 1 ", 15},  {"\ntotal mg 1 ", 192},   {"\nini_Open 0\n", 1},
                  {"\nhalf 0 3f000000\n", 1}, {" Num_gas_trub 7\n", 61}};
    for (size_t k = 0; k < sizeof wanted / sizeof *wanted; ++k) {
        int count = 0;
        for (const char* at = text; (at = strstr(at, wanted[k].line)) != NULL; ++at) ++count;
        if (count < wanted[k].at_least) {
            fprintf(stderr, "the reference has %d times%s\n", count, wanted[k].line);
            return 0;
        }
    }
    return 1;
}

static int session_in_this_process(const struct host_mode* mode, FILE* out) {
    int outcome = host_before(mode);
    if (outcome == 0) outcome = session_run(host_library, mode->flags, 1, out);
    if (outcome == 0) outcome = host_after(mode);
    if (fclose(out) != 0) outcome = 1;
    return outcome;
}

/* 0 the mode does as it should, 1 not, 77 the machine cannot. */
static int run_mode(const struct host_mode* mode, const char* reference) {
    int ends[2];
    if (pipe(ends) != 0) return 1;
    const pid_t child = fork();
    if (child < 0) return 1;
    if (child == 0) {
        const struct rlimit no_core = {0, 0};
        setrlimit(RLIMIT_CORE, &no_core);
        close(ends[0]);
        _exit(session_in_this_process(mode, fdopen(ends[1], "w")));
    }
    close(ends[1]);
    char* const text = read_all(fdopen(ends[0], "r"));
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == host_cannot) {
        printf("%s: not on this machine\n", mode->name);
        free(text);
        return host_cannot;
    }
    const int ended_well = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    const int differs = ended_well ? first_difference(reference, text, mode->own_clock) : 0;
    const int as_meant = mode->same ? ended_well && !differs : !ended_well || differs;
    printf("%s: %s", mode->name, as_meant ? "as it should be" : "NOT as it should be");
    if (WIFSIGNALED(status)) printf(", ended by signal %d (%s)", WTERMSIG(status), strsignal(WTERMSIG(status)));
    if (WIFEXITED(status) && !ended_well) printf(", exit status %d", WEXITSTATUS(status));
    if (ended_well && differs) printf(", line %d differs", differs);
    if (ended_well && !differs) printf(", %zu bytes of results, the same", strlen(text));
    printf("\n");
    free(text);
    return !as_meant;
}

int main(int argc, char** argv) {
    if (argc < 4) return 1;
    host_library = argv[1];
    setvbuf(stdout, NULL, _IOLBF, 0);
    const int ready = host_ready();
    if (ready != 0) return ready;
    if (workplace_make(argv[2]) != 0) return 1;
    if (argc > 4) {
        FILE* const out = fopen(argv[3], "w");
        return !out || session_in_this_process(&host_modes[0], out) != 0;
    }
    FILE* const file = fopen(argv[3], "r");
    if (!file) return 1;
    char* const reference = read_all(file);
    if (!is_sound(reference)) return 1;
    int failed = 0, ran = 0;
    for (int k = 0; k < host_mode_count; ++k) {
        const int outcome = run_mode(&host_modes[k], reference);
        failed |= outcome == 1;
        ran |= outcome != host_cannot;
    }
    free(reference);
    return failed ? 1 : ran ? 0 : host_cannot;
}
