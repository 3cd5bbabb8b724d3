#include "session.h"

#include <dlfcn.h>

#include <cstdlib>
#include <cstring>
#include <iterator>

#include "tools/host.h"

namespace {

constexpr struct {
    char fractions;  // 0 mole per cent, 1 volume fractions
    float x[15];
} gases[] = {
    {0, {96.5F, 1.8F, 0.45F, 0.1F, 0.1F, 0.03F, 0.05F, 0.07F, 0, 0, 0.3F, 0.6F, 0, 0, 0}},
    {1, {0.81212F, 0.04303F, 0.00895F, 0.00152F, 0.00151F, 0, 0, 0, 0, 0, 0.05702F, 0.07585F, 0, 0, 0}},
    {0, {84, 8, 3, 0.8F, 0.6F, 0.25F, 0.25F, 0.2F, 0.1F, 0.05F, 1.5F, 1, 0.1F, 0.05F, 1e-37F}},
};
constexpr float gas_states[][2] = {{15, 5.5e6F}, {-20, 1.2e5F}, {60, 1.1e7F}, {-23, 2.9e7F}, {200, 5e6F}};
constexpr float steam_states[][2] = {{300, 1.2e6F}, {150, 6e5F}, {150, 476160}, {90, 2e5F},
                                     {374, 2.3e7F}, {700, 1e6F}, {20, 5e9F}};
constexpr double temperatures[] = {0, 80, 240, 373.9, 374, 560, 800},
                 pressures[] = {0, 0.01, 0.49, 3.43, 24.01, 99.9, 101};

class Session {
public:
    explicit Session(const char* path) : library_(path) {
        put(library_->Init());
        gas();
        heat();
        water();
        numbers(path);
        put(library_->Done());
    }
    [[nodiscard]] const Results& results() const { return results_; }

private:
    void append(std::uint32_t word) {
        constexpr std::uint32_t infinity = 0x7F800000;  // the sign of a NaN is nobody's promise
        results_.words.push_back((word & ~0x80000000U) > infinity ? infinity + 1 : word);
    }
    void put(int value) { results_.words.push_back(static_cast<std::uint32_t>(value)); }
    void put() {
        put(status_);
        results_.computed += status_ == 1;
        for (const float& value : f_) {
            std::uint32_t word = 0;
            std::memcpy(&word, &value, sizeof word);
            append(word);
        }
        std::memset(f_, 0, sizeof f_);
    }

    void gas() {
        float* const f = f_;
        for (short method = 0; method < 4; ++method)
            for (int g = 0; g < 3; ++g)
                for (const auto& state : gas_states) {
                    const float* const x = gases[g].x;
                    const int channel = 1 + g;
                    library_->mg_init_tr(channel, 1, static_cast<short>(channel), 1, 7, 32, 400, 220, 0.05F,
                                         0.05F, 0, 1, 0, &status_);
                    library_->mg_param_gs(channel, state[0], state[1], 850, 0.5F, method, gases[g].fractions,
                                          x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8], x[9], x[10],
                                          x[11], x[12], x[13], x[14], 0.7F, &status_, f, f + 1, f + 2);
                    put();
                    library_->mg_tf_param(channel, 0, 1, g == 1 ? 0.002F : 0, &status_, f, f + 1, f + 2, f + 3,
                                          f + 4);
                    const float rho = f[0];
                    put();
                    library_->mg_param_tr(channel, &status_, f, f + 1, f + 2, f + 3, f + 4);
                    put();
                    library_->mg_mgn_param(channel, 1, 25000, rho, 0.7F, 34.2F, &status_, f, f + 1, f + 2,
                                           f + 3, f + 4, f + 5, f + 6, f + 7);
                    put();
                    routines();
                }
    }
    void routines() {
        short failed = 9;
        int k = 0;
        for (const auto routine : {library_->PF2, library_->NF3, library_->NF4, library_->PF4_1, library_->PF6})
            f_[k++] = routine();
        for (const auto method : {library_->PF3_1, library_->PF3_3, library_->PF3_4})
            f_[k++] = method(285, 10, 4.5F, failed);
        put();
    }

    void heat() {
        float* const f = f_;
        for (int channel = 1; channel <= 3; ++channel)
            for (const auto& state : steam_states) {
                short phase = 9;
                library_->mt_init_tr(channel, 1, static_cast<short>(1 + 3 * channel), 1, 7, 32, 300, 180, 0.1F,
                                     0, 0, 1, 0, &status_);
                library_->mt_param_tn(channel, state[0], state[1], 0.3F, 990, 1000, 0.5F, &status_, &phase, f,
                                      f + 1);
                put();
                library_->mt_tf_param(channel, channel == 2, 3, 0.25F, &status_, f, f + 1, f + 2, f + 3);
                const float rho = f[0], h = f[2];
                put();
                library_->mt_param_tr(channel, &status_, f, f + 1, f + 2, f + 3, f + 4);
                put();
                library_->mt_mgn_param(channel, 1, 40000, rho, h, &status_, f, f + 1, f + 2, f + 3, f + 4,
                                       f + 5, f + 6);
                put();
            }
    }

    void water() {
        for (const double t_C : temperatures)
            for (const double p_MPa : pressures) {
                double d[5] = {};
                std::uint32_t words[10];
                put(library_->t_param_1(t_C, p_MPa, t_C < 300 && p_MPa < 1 ? 3 : 1, d, d + 1, d + 2, d + 3));
                put(library_->t_phase_1(p_MPa, t_C, 0.01, d + 4));
                std::memcpy(words, d, sizeof words);
                for (const std::uint32_t word : words) append(word);
            }
    }

    // As settings files write them, whatever the host's locale says.
    void numbers(const char* path) {
        void* const handle = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
        using Get = int (*)(void*, const char*, const char*, const char*, const char*, float*);
        const auto get = reinterpret_cast<Get>(dlsym(handle, "_ZN7IniFile6CfgGetEPKcS1_S1_S1_Rf"));
        alignas(void*) char object[512];
        library_->ini_make(object, (std::string(std::getenv("SETTINGS")) + "/numbers.ini").c_str(), 1);
        const auto file = reinterpret_cast<IniFile*>(object);
        put(library_->ini_Open(file));
        for (const char* key : {"half", "third", "many", "small", "denormal", "large", "negative", "comma",
                                "bare", "exact", "exponents"}) {
            status_ = get && get(file, "NUMBERS", nullptr, nullptr, key, f_) == 0;
            put();
        }
        put(library_->ini_Close(file));
        library_->ini_end(file);
        dlclose(handle);
    }

    const kalorfix::host::Library library_;
    char status_ = 9;
    float f_[8] = {};
    Results results_;
};

}  // namespace

Results session(const char* library) { return Session(library).results(); }
