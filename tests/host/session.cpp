// SPDX-License-Identifier: MIT
#include "session.h"

#include <dlfcn.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "tools/cases/case_file.h"
#include "tools/cases/procedures.h"
#include "tools/host.h"

namespace cases = kalorfix::cases;

namespace {

class Session {
public:
    explicit Session(const char* path) : library_(path) {
        library_->Init();
        static const std::vector<cases::Table> tables = read();
        for (const cases::Table& table : tables)
            for (const cases::Finding& finding : cases::run(library_, table)) {
                results_.computed += finding.passed();
                put(finding.computed);
            }
        channels();
        numbers(path);
        library_->Done();
    }
    [[nodiscard]] const Results& results() const { return results_; }

private:
    static std::vector<cases::Table> read() {
        std::vector<cases::Table> tables;
        for (const char* name : {"gas_by_density", "gas_channel", "flow", "heat_carrier"}) {
            std::ifstream in(std::string(KALORFIX_CASES "/") + name + ".txt");
            for (cases::Table& table : cases::read_tables(in, name)) tables.push_back(std::move(table));
        }
        return tables;
    }
    template <class Value>
    void put(Value value) {
        std::uint64_t word = 0;
        if (!std::isnan(value)) std::memcpy(&word, &value, sizeof value);  // a NaN has many bits
        results_.words.push_back(word);
    }

    // The functions of the channels, which call the members.
    void channels() {
        char status = 9;
        short phase = 9;
        std::array<float, 8> f{};
        library_->mg_init_tr(2, 1, 1, 1, 7, 32, 400, 220, 0.05F, 0.05F, 0, 1, 0, &status);
        library_->mg_param_gs(2, 15, 5.5e6F, 0, 0, 2, 0, 96.5F, 1.8F, 0, 0, 0, 0, 0, 0, 0, 0, 1.1F, 0.6F, 0, 0,
                              0, 0, &status, &f[0], &f[1], &f[2]);
        library_->mg_tf_param(2, 0, 0, 0, &status, &f[0], &f[1], &f[2], &f[3], &f[4]);
        for (const float value : f) put(value);
        library_->mt_init_tr(2, 1, 4, 1, 7, 32, 300, 180, 0.1F, 0, 0, 1, 0, &status);
        library_->mt_param_tn(2, 300, 1.2e6F, 0, 0, 1000, 0.5F, &status, &phase, &f[0], &f[1]);
        library_->mt_tf_param(2, 0, 3, 0, &status, &f[0], &f[1], &f[2], &f[3]);
        library_->mt_param_tr(2, &status, &f[0], &f[1], &f[2], &f[3], &f[4]);
        library_->mt_mgn_param(2, 1, 40000, 4.7F, 3000, &status, &f[0], &f[1], &f[2], &f[3], &f[4], &f[5],
                               &f[6]);
        results_.computed += status == 1;
        for (const float value : f) put(value);
    }

    // As settings files write them, whatever the host's locale says.
    void numbers(const char* path) {
        void* const handle = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
        using Get = int (*)(void*, const char*, const char*, const char*, const char*, float*);
        const auto get = reinterpret_cast<Get>(dlsym(handle, "_ZN7IniFile6CfgGetEPKcS1_S1_S1_Rf"));
        alignas(void*) char object[512];
        library_->ini_make(object, (std::string(std::getenv("SETTINGS")) + "/numbers.ini").c_str(), 1);
        const auto file = reinterpret_cast<IniFile*>(object);
        library_->ini_Open(file);
        for (const char* key : {"half", "third", "denormal", "large", "negative", "comma", "bare"}) {
            float value = -1;
            results_.computed += get && get(file, "NUMBERS", nullptr, nullptr, key, &value) == 0;
            put(value);
        }
        library_->ini_Close(file);
        library_->ini_end(file);
        dlclose(handle);
    }

    const kalorfix::host::Library library_;
    Results results_;
};

}  // namespace

Results session(const char* library) { return Session(library).results(); }
