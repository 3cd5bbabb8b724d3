// SPDX-License-Identifier: MIT
// Any bytes as a program of calls: gas and heat channels in any order, their members, the gas routines, water, gas data that is
// damaged or cut, INI files. After each call what holds for any input is checked; the same program gives the same bits again
// under unusual floating-point settings of the host.
#include <sys/mman.h>
#include <sys/times.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cfenv>
#include <climits>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "arguments.h"
#include "frame/channels.h"
#include "kalorfix.h"
#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"
#include "kalorfix_runtime.h"

#ifdef __SSE2__
#include <xmmintrin.h>
#endif

namespace {

using fuzz::Range;
using fuzz::Ranges;

void require(bool holds) {
    if (!holds) __builtin_trap();
}

clock_t ticks = 0;  // of the library's clock; negative: it fails

std::array<int, 3> float_settings() {
    int vector_unit = 0;
#ifdef __SSE2__
    vector_unit = static_cast<int>(_mm_getcsr() & ~0x3FU);
#endif
    return {std::fegetround(), fegetexcept(), vector_unit};
}

// Files in memory, for code that opens files by name.
const int gas_file = memfd_create("gas.dat", MFD_CLOEXEC), ini_file = memfd_create("ini", MFD_CLOEXEC);
std::string file_holding(const std::string& content, int descriptor) {
    require(ftruncate(descriptor, 0) == 0);
    require(pwrite(descriptor, content.data(), content.size(), 0) == static_cast<ssize_t>(content.size()));
    return "/proc/self/fd/" + std::to_string(descriptor);
}

const std::string& gas_data_of_the_build() {
    static std::ifstream in("gas.dat", std::ios::binary);
    static const std::string content(std::istreambuf_iterator<char>(in), {});
    return content;
}

// The module state but for the tables.
template <class... Variables>
std::array<std::span<char>, sizeof...(Variables)> bytes_of(Variables&... variables) {
    return {std::span{reinterpret_cast<char*>(&variables), sizeof variables}...};
}
const auto module_state =
    bytes_of(T, P, DeltaP, Z, K, Roc, Xa, Xy, FP, Tnk, Pnk, Tn, Rom, Ron, Mu, kk, Ro, SM, qmi, qoi, qci, Xi, C,
             Tmp_Xi, B, EIJM, GIJM, Ckl, NumXi, Index, VNIC_FLAG, Plotnomer, Gas_Not_Init);

// The inputs of a channel function after the channel, and of its member.
constexpr Range init[]{{0, 1},    {1, 23},  {1, 1},   {1, 39.99}, {1, 39.99}, {200, 400},
                       {60, 200}, {0, 0.5}, {0, 0.3}, {0, 1},     {0, 5},     {0, 1}};
constexpr Range heat_state[]{{0, 500}, {1e4, 5e6}, {0, 10}, {0, 1000}, {0, 5000}, {0, 1}};
constexpr Range heat_properties[]{{0, 1}, {1, 3}, {0, 1}};
constexpr Range heat_flow[]{{1, 1}, {0, 1e5}, {0.1, 1000}, {0, 3500}};
constexpr Range gas_state[]{{-23.1, 66.8}, {1e5, 12e6}, {0, 1000}, {-1, 1},  {0, 3},  {0, 0},
                            {70, 100},     {0, 10},     {0, 4},    {0, 1},   {0, 1},  {0, 0.3},
                            {0, 0.3},      {0, 0.2},    {0, 0.1},  {0, 0.1}, {0, 15}, {0, 10},
                            {0, 0.1},      {0, 0.2},    {0, 0.5},  {0.66, 1}};
constexpr Range gas_properties[]{{0, 1}, {0, 1}, {0, 0.02}};
constexpr Range gas_flow[]{{1, 1}, {0, 1e5}, {0.6, 100}, {0.66, 1}, {0, 50}};
constexpr Range total[]{{0, 5}, {0, 1000}, {0, 1e6}, {0, 1000}, {-3, 4}};
constexpr Range interval[]{{0, 5}, {0, 1}, {0, 9e4}, {0, 1e6}, {0, 1e6}};
// Of the members beneath, and of functions without a channel.
constexpr Range one_pass[]{{0, 2}, {0, 1e5}, {0.1, 1000}, {0, 100}};
constexpr Range increment[]{{0, 1000}, {0, 1e6}, {0, 1e5}, {-3, 4}, {0, 1000}, {0, 1}};
constexpr Range in_interval[]{{0, 1e4}, {0, 100}, {0, 1}, {0, 1e6}, {0, 9e4}, {0, 1e6}, {0, 1e6}};
constexpr Range method[]{{250, 340}, {0, 12}, {0, 12}, {0, 15}, {0, 10}, {0.66, 1}};
constexpr Range water[]{{0, 800}, {0, 100}, {1, 3}};

class Program {
public:
    Program(const std::uint8_t* data, std::size_t size, bool unusual) : in_(data, size), unusual_(unusual) {}

    // Every result, bit by bit.
    std::vector<std::uint64_t> run() {
        begin();
        constexpr int most_calls = 32;  // and with it the time that one input takes
        for (int n = 0; n < most_calls && in_.remaining_bytes() > 0; ++n) call();
        for (const auto& variable : module_state)
            for (const char byte : variable) record(byte);
        return std::move(bits_);
    }

private:
    // Channels, module state, tables and clock as after the first Init.
    static void begin() {
        ticks = 0, ProstoyTime = 0.0, Num_gas_trub = 5;  // a calculator asks the clock when it is made
        for (const int channel : {1, 2, max_channel}) {
            renew(kalorfix::frame::gas_channels.GetVar(channel));
            renew(kalorfix::frame::heat_channels.GetVar(channel));
        }
        Done();
        load(gas_data_of_the_build());
        static const std::vector<std::string> loaded = [] {
            std::vector<std::string> variables;
            for (const auto& variable : module_state) variables.emplace_back(variable.begin(), variable.end());
            return variables;
        }();
        for (std::size_t k = 0; k < loaded.size(); ++k) std::ranges::copy(loaded[k], module_state[k].begin());
        SRV_Path.SYSTEM = ".", SRV_Path.SETTINGS = "tests/fuzz/settings", SRV_Path.PATHDB = "/dev/null";
    }
    template <class Calculator>
    static void renew(Calculator* calculator) {
        std::destroy_at(calculator);
        std::construct_at(calculator);
    }
    static void load(const std::string& gas_data) {
        std::strcpy(PATH_SRAM_FOR_LOADTABL, file_holding(gas_data, gas_file).c_str());
        require(INIT_GAS() == 0 && Gas_Not_Init == 1 && V_Mi && B1ij);
    }

    std::size_t pick(std::size_t count) { return in_.ConsumeIntegralInRange<std::size_t>(0, count - 1); }

    template <class Value>
    void record(Value value) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof value);
        bits_.push_back(bits);
    }

    // A call with arguments read by their types, under the host's settings.
    template <class... Types, class Function>
    auto called(const Ranges& ranges, Function&& function) {
        in_.begin(ranges);
        std::tuple<Types...> arguments{in_.template take<Types>()...};
        if (unusual_) {
            std::fesetround(FE_UPWARD);
            feenableexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW);
#ifdef __SSE2__
            _mm_setcsr(_mm_getcsr() | 0x8040U);  // denormals flushed, without a word to the functions of fenv.h
#endif
        }
        const auto before = float_settings();
        const auto result = std::apply(function, arguments);
        require(float_settings() == before);
        std::fesetenv(FE_DFL_ENV);
        record(result), record(in_.out.status), record(in_.out.code);
        for (const float value : in_.out.singles) record(value);
        for (const double value : in_.out.doubles) record(value);
        return result;
    }
    template <class Result, class... Types>
    auto plain(const Ranges& ranges, Result (*function)(Types...)) {
        return called<Types...>(ranges, [&](auto&... arguments) {
            if constexpr (std::is_void_v<Result>)
                return function(arguments...), 0;
            else
                return function(arguments...);
        });
    }
    // The members are not shielded from the host's settings.
    template <class Owner, class... Types>
    char member(const Ranges& ranges, Owner& object, char (Owner::*function)(Types...)) {
        const bool unusual = std::exchange(unusual_, false);
        const char status =
            called<Types...>(ranges, [&](auto&... arguments) { return (object.*function)(arguments...); });
        unusual_ = unusual;
        require(status == 0 || status == 1);
        return status;
    }

    // A channel function or its member, and what holds whatever they are given. Only the saturation line may be undefined.
    template <class Calculator, class... Types, class Owner, class... MemberTypes>
    void step(const Ranges& ranges, LocVect<Calculator>& channels, int (*function)(int, Types...),
              char (Owner::*its_member)(MemberTypes...)) {
        static constexpr int numbers[] = {1, 2, 1, 2,  1,       2,       1,           2,
                                          1, 2, 0, -1, INT_MAX, INT_MIN, max_channel, 20001};
        const std::size_t which = pick(std::size(numbers));
        const int channel = numbers[which];
        Calculator* const calculator = channels.GetVar(channel);
        const fuzz::Outputs& out = in_.out;
        char status = 0;
        if (which % 4 == 3 && calculator) {
            status = member<Owner>(ranges, *calculator, its_member);
        } else {
            const int returned =
                called<Types...>(ranges, [&](auto&... arguments) { return function(channel, arguments...); });
            status = out.status;
            require(returned == 1 && (status == 0 || status == 1 || status == out.no_status));
        }
        if (!calculator) require(status != 1 && out.singles == decltype(out.singles){});
        if (status != 1 || ranges.data() == heat_state) return;
        for (const double value : out.doubles) require(std::isfinite(value));
        for (const float value : out.singles) require(std::isfinite(value));
    }

    // The members beneath the flow and the totals, on what the calls before left.
    void inner_member(cCommon2005& c) {
        const Ranges without_pass = Ranges(one_pass).subspan(1);
        const std::size_t which = pick(7);
        if (which == 0) member({}, c, &cCommon2005::CountDd);
        if (which == 1) member({}, c, &cCommon2005::CountbetaEKp);
        if (which == 2) member(one_pass, c, &cCommon2005::Countq_mReCK_sh);
        if (which == 3) member(without_pass, c, &cCommon2005::CountqmalphaepsilonRe);
        if (which == 4) member(without_pass, c, &cCommon2005::Countepsilon);
        if (which == 5) member(increment, c, &cCommon2005::in_Param);
        if (which == 6) member(in_interval, c, &cCommon2005::in2_Param);
        record(c.q_m);
    }

    void gas_method() {
        static constexpr decltype(&PF3_1) methods[] = {PF3_1, PF3_2, PF3_3, PF3_4};
        const std::size_t which = pick(6);
        const float result =
            which < 4 ? plain(method, methods[which]) : plain(method, which == 4 ? NF1_1 : NF1_2);
        const short failed = in_.out.code;
        require(failed == 0 || failed == 1);
        if (failed == 0) require(std::memcmp(&result, &K, sizeof K) == 0);
        if (which < 2) return;  // the cube root of a negative number
        require(failed ? result == 0.0F : result > 0.0F && std::isfinite(result));
    }

    void gas_routine() {
        static constexpr decltype(&PF2) routines[] = {PF2, PF4_1, PF6, NF2_1, NF3, NF4, NF6, NF7};
        const std::size_t which = pick(12);
        if (which < 8) plain({}, routines[which]);
        if (which == 8) plain(method, NF2_2);
        if (which == 9) plain(method, PF5);
        if (which >= 10) plain(Ranges(gas_state).subspan(6), which == 10 ? PF1_1 : PF1_2);
    }

    void water_and_steam() {
        const short failed = plain(water, t_param_1);
        require(failed == 0 || failed == 1);
        for (const double value : in_.out.doubles) require(failed ? value == 0.0 : std::isfinite(value));
        const short code = plain(water, t_phase_1);
        require(code >= 0 && code <= 3 && (code != 0 || in_.out.doubles[0] == 0.0));
    }

    // What a host may write or bring about.
    void surroundings() {
        const auto& variable = module_state[pick(module_state.size())];
        const std::size_t at = pick(variable.size()) / 4 * 4, which = pick(5);
        if (which == 0) in_.ConsumeData(&variable[at], std::min<std::size_t>(4, variable.size() - at));
        if (which == 1) ticks = in_.ConsumeIntegral<std::int32_t>();
        if (which == 2)
            ProstoyTime = in_.ConsumeBool() ? static_cast<double>(at) : in_.ConsumeFloatingPoint<double>();
        if (which == 3) plain({}, in_.ConsumeBool() ? Init : Done);
        if (which == 4) other_gas_data();
    }
    void other_gas_data() {
        std::string data = gas_data_of_the_build();
        for (std::size_t damages = pick(4); damages > 0; --damages)
            in_.ConsumeData(&data[pick(data.size() / 4) * 4], 4);
        if (in_.ConsumeBool()) data.resize(pick(data.size() + 8));
        load(data);
        if (!in_.ConsumeBool()) return;
        REINIT_GAS();
        require(!V_Mi && !B1ij);
    }

    void settings() {
        const std::string content = in_.ConsumeRandomLengthString();
        constexpr int read_text = 1;
        IniFile file(file_holding(content, ini_file).c_str(), read_text);
        const unsigned char opened = file.Open();
        require(opened == 0 || opened == 3);
        for (char const* section : {static_cast<char const*>(nullptr), "S", "TORNOL"}) {
            for (char const* key : {static_cast<char const*>(nullptr), "k", "Num_gas_trub"})
                read_values(file, section, key);
            char key[1000], value[1000];
            int line = 0;
            std::size_t lines = 0;
            while (file.GetNextKey(section, nullptr, nullptr, key, value, &line) == 0) {
                require(std::memchr(key, 0, sizeof key) && std::memchr(value, 0, sizeof value) && line >= 1);
                require(++lines <= content.size());
            }
        }
        require(file.Close() == 0);
    }
    void read_values(IniFile& file, char const* section, char const* key) {
        int integer = 0;
        short narrow = 0;
        float number = 0.0F;
        std::string text(1000, 'x'), longest(2000, 'x');
        const int found = file.CfgGet(section, nullptr, nullptr, key, integer);
        require(found >= 0 && found <= 2);
        require(file.CfgGet(section, nullptr, nullptr, key, narrow) == found);
        require(file.CfgGet(section, nullptr, nullptr, key, number) == found);
        require(file.CfgGet(section, nullptr, nullptr, key, text.data()) == found);
        require(file.CfgGetMax(section, nullptr, nullptr, key, longest.data()) == found);
        record(number);
        if (found != 0) return;
        require(narrow == static_cast<short>(integer));
        require(std::ranges::count(text, '\0') > 0 && std::ranges::count(longest, '\0') > 0);
        constexpr int most = 8;
        std::vector<int> list(longest.size() * most);
        const int count = file.ConvertStrToListVar(longest.data(), most, list.data());
        require(count >= 0 && static_cast<std::size_t>(count) <= list.size());
        require(std::all_of(list.begin(), list.begin() + count, [](int channel) { return channel >= 1; }));
    }

    void call() {
        static constexpr auto& heat = kalorfix::frame::heat_channels;
        static constexpr auto& gas = kalorfix::frame::gas_channels;
        static constexpr void (*kinds[])(Program&) = {
            [](Program& p) { p.step(init, heat, mt_init_tr, &cTeplo2005::Init_TR); },
            [](Program& p) { p.step(heat_state, heat, mt_param_tn, &cTeplo2005::Param_tn); },
            [](Program& p) { p.step(heat_properties, heat, mt_tf_param, &cTeplo2005::tf_Param); },
            [](Program& p) { p.step({}, heat, mt_param_tr, &cTeplo2005::Param_tr); },
            [](Program& p) { p.step(heat_flow, heat, mt_mgn_param, &cTeplo2005::mgn_Param); },
            [](Program& p) { p.step(total, heat, mt_int_param, &cTeplo2005::int_Param); },
            [](Program& p) { p.step(interval, heat, mt_int_param_1, &cTeplo2005::int2_Param); },
            [](Program& p) { p.inner_member(*heat.GetVar(1)); },
            [](Program& p) { p.step(init, gas, mg_init_tr, &cGas2005::Init_TR); },
            [](Program& p) { p.step(gas_state, gas, mg_param_gs, &cGas2005::Param_gs); },
            [](Program& p) { p.step(gas_properties, gas, mg_tf_param, &cGas2005::tf_Param); },
            [](Program& p) { p.step({}, gas, mg_param_tr, &cGas2005::Param_tr); },
            [](Program& p) { p.step(gas_flow, gas, mg_mgn_param, &cGas2005::mgn_Param); },
            [](Program& p) { p.step(total, gas, mg_int_param, &cGas2005::int_Param); },
            [](Program& p) { p.step(interval, gas, mg_int_param_1, &cGas2005::int2_Param); },
            [](Program& p) { p.inner_member(*gas.GetVar(1)); },
            [](Program& p) { p.gas_method(); },
            [](Program& p) { p.gas_routine(); },
            [](Program& p) { p.water_and_steam(); },
            [](Program& p) { p.surroundings(); },
            [](Program& p) { p.settings(); }};
        kinds[pick(std::size(kinds))](*this);
    }

    fuzz::Arguments in_;
    bool unusual_;
    std::vector<std::uint64_t> bits_;
};

}  // namespace

// The library's clock asks it, in the C library's place.
extern "C" clock_t times(tms*) noexcept {
    if (ticks >= 0) return ticks;
    errno = EFAULT;
    return -1;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    require(Program(data, size, false).run() == Program(data, size, true).run());
    return 0;
}
