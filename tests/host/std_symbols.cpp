// A C++ host that exports what it has of the standard library: templates made here, streams, exceptions. The library has a C++
// runtime of its own: neither may be bound to the other's.
#include <dlfcn.h>

#include <cstdio>
#include <iostream>
#include <iterator>
#include <locale>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

extern "C" {
#include "bindings.h"
#include "host.h"
}

// All of it, so that there is something to be bound.
template class std::vector<float>;
template class std::vector<double>;
template class std::basic_string<char>;

namespace {

// Much of what the library might use as well.
double use_the_standard_library(const std::string& text) {
    std::map<std::string, std::vector<double>> numbers;
    std::istringstream in(text);
    in.imbue(std::locale::classic());
    for (double value = 0; in >> value;) numbers["all"].push_back(value);
    std::vector<float> narrow(numbers["all"].begin(), numbers["all"].end());
    narrow.resize(narrow.size() + 7, 1.0F);
    std::ostringstream out;
    for (const float value : narrow) out << value << ' ';
    double sum = 0.0;
    std::istringstream written(out.str());
    for (std::string word; std::getline(written, word, ' ');) sum += std::stod(word);
    try {
        static_cast<void>(narrow.at(1000));
    } catch (const std::out_of_range& error) {
        sum += error.what() ? 1000.0 : 0.0;
    }
    return sum;
}

bool host_works() {
    std::ostringstream line;
    line << use_the_standard_library("1.5 2.25 3");
    if (line.str() == "1013.75") return true;
    std::cerr << "the host's own standard library fails: " << line.str() << std::endl;
    return false;
}

const void* base_of(const void* address) {
    Dl_info about{};
    return dladdr(address, &about) ? about.dli_fbase : nullptr;
}

struct Audit {
    const void* library = nullptr;
    const void* program = nullptr;
    void* c_library = nullptr;
    bool of_library = false;
    int faults = 0;
    int bound_to_program = 0;
    bool clock_bound = false;
};

// The operator delete of the process is meant: what the program deletes is its own.
bool is_cxx(std::string_view symbol) {
    return symbol != "_ZdlPv" && (symbol.starts_with("_Z") || symbol.starts_with("__cxa_throw"));
}

void judge(const char* symbol, const void* target, void* context) {
    Audit& audit = *static_cast<Audit*>(context);
    const void* const owner = base_of(target);
    const std::string_view name = symbol;
    bool fault = false;
    if (audit.of_library) {
        // Its C++ symbols are its own; of the program it takes what stands there in the C library's place.
        fault =
            is_cxx(name) ? owner != audit.library : owner == audit.program && !dlsym(audit.c_library, symbol);
        audit.clock_bound = audit.clock_bound || (name == "times" && owner == audit.program);
    } else {
        fault = owner == audit.library;
    }
    if (!fault) return;
    ++audit.faults;
    std::cerr << (audit.of_library ? "the library's " : "the program's ") << name << " is bound elsewhere\n";
}

void* kept_open = nullptr;

}  // namespace

extern "C" {
const host_mode host_modes[] = {
    {"now, local", RTLD_NOW | RTLD_LOCAL, 1, 1, 0},
    {"lazy, global", RTLD_LAZY | RTLD_GLOBAL, 1, 1, 0},
};
const int host_mode_count = static_cast<int>(std::size(host_modes));

int host_ready(void) {
    const bool exported = dlsym(RTLD_DEFAULT, "_ZNSt6vectorIfSaIfEE9push_backERKf") != nullptr;
    if (exported && host_works()) return 0;
    std::fputs("the program exports nothing of the standard library\n", stderr);
    return 1;
}

int host_before(const host_mode* mode) {
    kept_open = dlopen(host_library, mode->flags);
    if (!kept_open) return 1;
    Audit audit;
    audit.library = base_of(dlsym(kept_open, "t_param_1"));
    audit.program = base_of(&host_modes);
    audit.c_library = dlopen("libc.so.6", RTLD_NOW | RTLD_NOLOAD);
    if (!audit.library || !audit.program || !audit.c_library) return 1;
    audit.of_library = true;
    const int of_library = bindings_of(kept_open, judge, &audit);
    audit.of_library = false;
    const int of_program = bindings_of(nullptr, judge, &audit);
    std::printf("%s: %d symbols of the library, %d of the program\n", mode->name, of_library, of_program);
    std::fflush(stdout);
    dlclose(audit.c_library);
    // With no more than these the walk would have missed the tables.
    if (of_library < 100 || of_program < 50 || !audit.clock_bound) return 1;
    return audit.faults != 0 || !host_works();
}

int host_after(const host_mode*) {
    if (dlclose(kept_open) != 0) return 1;
    return !host_works();
}
}
