// Any bytes as a program of calls on gas channels, routines of the gas module, damage and reloads: any order, any arguments.
// Three runs must agree: the plain one, one under unusual floating-point settings, and one without the calls of the other
// channels.
#include <algorithm>
#include <optional>

#include "gas_host.h"
#include "gas_program.h"

namespace {

using fuzz::Call;
using fuzz::Kind;
using fuzz::require;

bool concerns(const Call& c, int channel) {
    return fuzz::of_one_channel(c) ? c.channel == channel : !fuzz::on_module_state(c);
}

// Channels, module state, tables and clock as after the first Init.
void begin(const std::vector<Call>& program) {
    fuzz::clock_ticks = 0;
    fuzz::renew<fuzz::Gas>(program);
    fuzz::make_tables_whole();
    static const fuzz::ModuleState loaded = fuzz::saved_module_state();
    fuzz::restore_module_state(loaded);
    Is_already_init = 1;
    Num_gas_trub = 5;
    ProstoyTime = 0.0;
}

// With a channel the calls of the others are left out, and what those left in the module state is put where the channel
// reads it: only the properties do.
fuzz::GasHost run(const std::vector<Call>& program, bool unusual, std::optional<int> only_channel = {},
                  const fuzz::GasHost::States& states = {}) {
    begin(program);
    fuzz::GasHost host(unusual);
    for (std::size_t n = 0; n < program.size(); ++n) {
        const Call& call = program[n];
        if (only_channel && !concerns(call, *only_channel)) continue;
        if (only_channel && call.kind == Kind::tf_param) host.take_over(states.at(n));
        host.make(n, call);
    }
    return host;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t longest_input = 640;
    fuzz::InputBytes in(data, std::min(size, longest_input));
    const std::vector<Call> program = fuzz::read_gas_program(in);
    if (program.empty()) return 0;

    const fuzz::GasHost plain = run(program, false);
    const fuzz::ModuleState left = fuzz::saved_module_state();
    require(run(program, true).records() == plain.records());
    require(fuzz::saved_module_state() == left);

    const auto owned = std::find_if(program.rbegin(), program.rend(), fuzz::of_one_channel);
    if (owned == program.rend()) return 0;
    const int channel = owned->channel;
    const fuzz::GasHost part = run(program, false, channel, plain.states());
    fuzz::require_same(plain.records(), part.records(),
                       [&](std::size_t n) { return concerns(program[n], channel); });
    return 0;
}
