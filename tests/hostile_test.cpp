// Arbitrary arguments in arbitrary order: a status, never a crash, a hang or a trap.
#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>

#include "tools/host.h"
#include "tools/runtime.h"

namespace {

class Hostile {
public:
    explicit Hostile(unsigned seed) : random_(seed) {}

    float number() {
        static constexpr float inf = std::numeric_limits<float>::infinity();
        static constexpr float nan = std::numeric_limits<float>::quiet_NaN();
        static constexpr float special[] = {0.0F,      -0.0F,  1.0F,   -1.0F,  inf,     -inf,
                                            1e38F,     -1e38F, 1e-38F, 1e-45F, 273.15F, 373.946F,
                                            22.064e6F, 0.5F,   39.0F,  40.0F,  nan};
        switch (pick(4)) {
            case 0:
                return special[pick(std::size(special))];
            case 1: {
                // A signalling NaN would trap in the harness already; the top bit of the fraction makes it quiet.
                const auto bits = static_cast<std::uint32_t>(random_()) | 0x00400000U;
                float value = 0.0F;
                std::memcpy(&value, &bits, sizeof value);
                return value;
            }
            case 2:
                return std::uniform_real_distribution<float>(0.0F, 1000.0F)(random_);
            default:
                return std::pow(10.0F, std::uniform_real_distribution<float>(-6.0F, 8.0F)(random_));
        }
    }
    int channel() {
        static constexpr int channels[] = {1, 2, 3, 0, -1, 20001};
        return channels[pick(std::size(channels))];
    }
    char selector() { return static_cast<char>(pick(5) == 0 ? random_() : pick(3)); }
    short code() { return static_cast<short>(pick(8) == 0 ? random_() : pick(25)); }

    std::size_t pick(std::size_t count) { return static_cast<std::size_t>(random_()) % count; }

private:
    std::mt19937 random_;
};

float share(Hostile& h) { return h.pick(3) == 0 ? h.number() : static_cast<float>(h.pick(101)); }

int gas_state(const kalorfix::host::Library& library, Hostile& h, char& status, float* f) {
    // Often near the window: most states would be refused before a method runs.
    const bool near = h.pick(2) == 0;
    const float t = near ? static_cast<float>(h.pick(90)) - 23.0F : h.number();
    const float p = near ? 1e5F * static_cast<float>(1 + h.pick(300)) : h.number();
    float x[15];
    for (float& value : x) value = h.pick(2) == 0 ? 0.0F : share(h);
    const auto method = static_cast<short>(h.pick(4));
    return library->mg_param_gs(h.channel(), t, p, near ? 0.0F : h.number(), h.number(),
                                h.pick(4) == 0 ? h.code() : method, h.selector(), x[0], x[1], x[2], x[3], x[4],
                                x[5], x[6], x[7], x[8], x[9], x[10], x[11], x[12], x[13], x[14], h.number(),
                                &status, f, f + 1, f + 2);
}

// The routines beneath the channel functions, on whatever stands in the module state, which a host may overwrite.
void gas_routines(const kalorfix::host::Library& library, Hostile& h) {
    const kalorfix::host::GasState& state = library->gas;
    if (h.pick(3) == 0) *state.NumXi = h.code();
    if (h.pick(3) == 0) state.Index[h.pick(15)] = h.code();
    for (float* const value : {state.T, state.P, state.Roc, state.Xa, state.Ron, state.qmi, state.Tmp_Xi})
        if (h.pick(5) == 0) *value = h.number();
    if (h.pick(3) == 0) *state.VNIC_FLAG = h.selector();
    short failed = 9;
    const float T = h.pick(2) ? 290.0F : h.number();
    const float p = h.pick(2) ? 8.0F : h.number();
    for (const auto method : {library->PF3_1, library->PF3_2, library->PF3_3, library->PF3_4}) {
        method(T, h.pick(2) ? 0.0F : h.number(), p, failed);
        EXPECT_TRUE(failed == 0 || failed == 1);
    }
    for (const auto method : {library->NF1_1, library->NF1_2}) {
        const float K = method(T, 0.0F, p, h.number(), h.number(), h.number(), failed);
        EXPECT_TRUE(failed == 0 ? std::isfinite(K) : failed == 1 && K == 0.0F);
    }
    for (const auto routine : {library->PF2, library->PF4_1, library->PF6, library->NF2_1, library->NF3,
                               library->NF4, library->NF6, library->NF7})
        routine();
    library->PF5(static_cast<unsigned long>(h.pick(3)));
    library->NF2_2(h.number(), h.number(), h.number());
    library->PF1_2(share(h), h.number(), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, h.number());
}

void one_call(const kalorfix::host::Library& library, Hostile& h) {
    char status = 77;
    float f[8];
    short phase = 0;
    int returned = 1;
    switch (h.pick(11)) {
        case 8:
        case 9:
            returned = gas_state(library, h, status, f);
            break;
        case 10:
            returned = library->mg_tf_param(h.channel(), h.selector(), h.selector(), h.number(), &status, f,
                                            f + 1, f + 2, f + 3, f + 4);
            gas_routines(library, h);
            break;
        case 0:
        case 1:
            returned = (h.pick(2) ? library->mt_init_tr : library->mg_init_tr)(
                h.channel(), h.selector(), h.code(), h.selector(), h.number(), h.number(), h.number(),
                h.number(), h.number(), h.number(), h.selector(), h.number(), h.number(), &status);
            break;
        case 2:
            returned = (h.pick(2) ? library->mt_param_tr : library->mg_param_tr)(h.channel(), &status, f, f + 1,
                                                                                 f + 2, f + 3, f + 4);
            break;
        case 3:
            returned =
                library->mg_mgn_param(h.channel(), h.selector(), h.number(), h.number(), h.number(), h.number(),
                                      &status, f, f + 1, f + 2, f + 3, f + 4, f + 5, f + 6, f + 7);
            break;
        case 4:
            returned = library->mt_mgn_param(h.channel(), h.selector(), h.number(), h.number(), h.number(),
                                             &status, f, f + 1, f + 2, f + 3, f + 4, f + 5, f + 6);
            break;
        case 5:
            returned = library->mt_param_tn(h.channel(), h.number(), h.number(), h.number(), h.number(),
                                            h.number(), h.number(), &status, &phase, f, f + 1);
            break;
        case 6:
            returned = library->mt_tf_param(h.channel(), h.selector(), static_cast<unsigned short>(h.code()),
                                            h.number(), &status, f, f + 1, f + 2, f + 3);
            break;
        default: {
            double d[4];
            const short failed =
                library->t_param_1(static_cast<double>(h.number()), static_cast<double>(h.number()), h.code(),
                                   d, d + 1, d + 2, d + 3);
            ASSERT_TRUE(failed == 0 || failed == 1);
            for (const double value : d) EXPECT_TRUE(failed ? value == 0.0 : std::isfinite(value)) << value;
            const short code =
                library->t_phase_1(static_cast<double>(h.number()), static_cast<double>(h.number()),
                                   static_cast<double>(h.number()), d);
            ASSERT_TRUE(code >= 0 && code <= 3);
            status = 0;
        }
    }
    ASSERT_EQ(returned, 1);
    ASSERT_TRUE(status == 0 || status == 1);
}

TEST(Hostile, ArgumentsEndInAStatus) {
    const kalorfix::host::Runtime runtime(KALORFIX_GAS_DAT);
    const kalorfix::host::Library library(KALORFIX_LIBRARY);
    library->Init();
    Hostile hostile(20051203);
    for (int k = 0; k < 200000 && !testing::Test::HasFailure(); ++k) one_call(library, hostile);
}

// A host may have enabled traps, or another rounding: neither changes a result or is changed itself.
TEST(Hostile, FloatingPointSettingsOfTheHostDoNotMatter) {
    const kalorfix::host::Runtime runtime(KALORFIX_GAS_DAT);
    const kalorfix::host::Library library(KALORFIX_LIBRARY);
    library->Init();
    double plain[4], again[4];
    ASSERT_EQ(library->t_param_1(250, 3, 1, plain, plain + 1, plain + 2, plain + 3), 0);

    const int traps = FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW;
    const bool can_trap = feenableexcept(traps) != -1 && fegetexcept() == traps;
    std::fesetround(FE_UPWARD);
    Hostile hostile(7);
    for (int k = 0; k < 20000 && !testing::Test::HasFailure(); ++k) one_call(library, hostile);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    short phase = 0;
    char status = 0;
    float f[2];
    EXPECT_EQ(library->t_param_1(nan, nan, 1, again, again + 1, again + 2, again + 3), 1);
    EXPECT_EQ(library->t_param_1(0, 0, 1, again, again + 1, again + 2, again + 3), 0);
    library->mt_init_tr(1, 0, 1, 0, 0, 0, 100, 50, 0, 0, 0, 0, 0, &status);
    library->mt_param_tn(1, 700, 1e6F, 0, 0, 0, 0, &status, &phase, f, f + 1);  // a NaN saturation pressure
    EXPECT_EQ(status, 1);
    EXPECT_EQ(library->t_param_1(250, 3, 1, again, again + 1, again + 2, again + 3), 0);
    EXPECT_EQ(std::fegetround(), FE_UPWARD);
    EXPECT_EQ(fegetexcept(), can_trap ? traps : 0);
    std::fesetround(FE_TONEAREST);
    fedisableexcept(FE_ALL_EXCEPT);
    for (int k = 0; k < 4; ++k) EXPECT_EQ(plain[k], again[k]);
}

}  // namespace
