// SPDX-License-Identifier: MIT
// host_... LIBRARY GAS_DATA REFERENCE [write]
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fstream>
#include <iterator>

extern "C" {
#include "host.h"
}
#include "session.h"
#include "tools/runtime.h"

const char* host_library;

namespace {

using Words = std::vector<std::uint64_t>;

// Settings with numbers, and a stamp of 2038-01-19: no downtime before that.
void furnish() {
    std::ofstream(std::string(std::getenv("SETTINGS")) + "/numbers.ini")
        << "[NUMBERS]\nhalf = 0.5\nthird = 0.333333333333333333333\nlarge = "
           "340282346638528859811704183484516925440\n"
           "denormal = 0.000000000000000000000000000000000000000012345\nnegative = -273.15\ncomma = 1,5\nbare "
           "= .25\n";
    std::ofstream(std::string(std::getenv("PATHDB")) + "/dat/timewait.dat")
        .write("\xFF\xFF\xFF\x7F\0\0\0\0\0\0\0", 12);
}

int write(const char* file) {
    const Results results = session(host_library);
    constexpr int soundly = 500;  // a reference of refusals would be the same for every host
    std::printf("%d calls computed something\n", results.computed);
    std::ofstream out(file, std::ios::binary);
    out.write(reinterpret_cast<const char*>(results.words.data()),
              static_cast<std::streamsize>(results.words.size() * 8));
    return results.computed >= soundly && out.flush() ? 0 : 1;
}

// 0 the mode does as it should, 1 not.
int run_here(const host_mode& mode, const Words& reference) {
    std::printf("%s\n", mode.name);
    std::fflush(stdout);
    if (const int outcome = host_before(&mode)) return outcome;
    void* const handle = dlopen(host_library, mode.flags);
    const Results results = session(host_library);
    const bool closed = handle && dlclose(handle) == 0;
    if (host_after(&mode) != 0 || !closed) return 1;
    for (std::size_t k = 0; k < results.words.size(); ++k)
        if (k >= reference.size() || results.words[k] != reference[k]) {
            std::fprintf(stderr, "word %zu of the results is another\n", k);
            return 1;
        }
    return 0;
}

// In a process of its own.
int run(const host_mode& mode, const Words& reference) {
    const pid_t child = fork();
    if (child == 0) {
        const int outcome = run_here(mode, reference);
        std::fflush(nullptr);
        _exit(outcome);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFSIGNALED(status)) std::fprintf(stderr, "ended by signal %d\n", WTERMSIG(status));
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc < 4) return 1;
    host_library = argv[1];
    const kalorfix::host::Runtime runtime(argv[2]);
    furnish();
    if (argc > 4) return write(argv[3]);
    std::ifstream in(argv[3], std::ios::binary);
    const std::string content(std::istreambuf_iterator<char>(in), {});
    Words reference(content.size() / 8);
    std::memcpy(reference.data(), content.data(), content.size());
    int failed = 0;
    for (int k = 0; k < host_mode_count; ++k) failed += run(host_modes[k], reference) != 0;
    return failed != 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
