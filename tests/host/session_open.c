/* Finding the library's functions and variables. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <string.h>

#include "session.h"

static int missing;

static void find(const struct library* library, const char* symbol, void* target) {
    void* const found = dlsym(library->handle, symbol);
    if (!found) {
        fprintf(stderr, "no symbol %s\n", symbol);
        missing = 1;
    }
    memcpy(target, &found, sizeof found);
}

int library_open(struct library* library, const char* path, int flags) {
    static const char* const density_methods[] = {"_Z5NF1_1ffffffRs", "_Z5NF1_2ffffffRs"};
    static const char* const methods[] = {"_Z5PF3_1fffRs", "_Z5PF3_2fffRs", "_Z5PF3_3fffRs", "_Z5PF3_4fffRs"};
    static const char* const routines[] = {"_Z3PF2v",   "_Z3NF3v", "_Z3NF4v", "_Z5NF2_1v",
                                           "_Z5PF4_1v", "_Z3PF6v", "_Z3NF6v", "_Z3NF7v"};
    memset(library, 0, sizeof *library);
    library->flags = flags;
    library->handle = dlopen(path, flags);
    if (!library->handle) {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    missing = 0;
#define FUNCTION(name) find(library, #name, &library->name);
#include "session_functions.h"
#undef FUNCTION
    find(library, "_Z5PF1_1fffffffffffffff", &library->PF1_1);
    find(library, "_Z5PF1_2fffffffffffffff", &library->PF1_2);
    for (int k = 0; k < 2; ++k) find(library, density_methods[k], &library->density_methods[k]);
    for (int k = 0; k < 4; ++k) find(library, methods[k], &library->methods[k]);
    for (int k = 0; k < 8; ++k) find(library, routines[k], &library->routines[k]);
    find(library, "_Z3PF5m", &library->PF5);
    find(library, "_Z5NF2_2fff", &library->NF2_2);
    find(library, "_Z9abs_clockv", &library->abs_clock);
    find(library, "_ZN7IniFileC1EPKci", &library->ini_make);
    find(library, "_ZN7IniFileD1Ev", &library->ini_end);
    find(library, "_ZN7IniFile4OpenEv", &library->ini_Open);
    find(library, "_ZN7IniFile5CloseEv", &library->ini_Close);
    find(library, "_ZN7IniFile6CfgGetEPKcS1_S1_S1_Rf", &library->ini_float);
    find(library, "_ZN7IniFile6CfgGetEPKcS1_S1_S1_Rs", &library->ini_short);
    find(library, "_ZN7IniFile6CfgGetEPKcS1_S1_S1_Pc", &library->ini_string);
    return missing;
}

void* library_variable(const struct library* library, const char* name) {
    /* Variables follow the ordinary rule: a definition of the program goes before the library's own. Asked for with
       RTLD_DEFAULT, a library in the global scope would never be unloaded again. */
    void* const program = dlopen(NULL, RTLD_NOW);
    void* found = library->flags & RTLD_DEEPBIND ? NULL : dlsym(program, name);
    if (!found) found = dlsym(library->handle, name);
    dlclose(program);
    return found;
}

int session_run(const char* path, int flags, int finish, FILE* out) {
    struct library library;
    if (library_open(&library, path, flags) != 0) return 1;
    fprintf(out, "Init %d\n", library.Init());
    session_calls(&library, out);
    if (finish) fprintf(out, "Done %d\n", library.Done());
    return dlclose(library.handle);
}
