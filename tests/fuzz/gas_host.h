// A host of gas channels for the fuzz harness: the calls of gas alone, the routines of the module, lifecycle and tables.
#pragma once

#include <map>

#include "channel_host.h"
#include "gas_module.h"
#include "gas_program.h"

namespace fuzz {

struct Gas {
    using Calculator = cGas2005;
    static constexpr std::size_t integrators = 4;
    static constexpr auto init_tr = mg_init_tr;
    static constexpr auto param_tr = mg_param_tr;
    static constexpr auto int_param = mg_int_param;
    static constexpr auto int_param_1 = mg_int_param_1;
    static LocVect<cGas2005>& registry() { return kalorfix::frame::gas_channels; }
    static double flow(const cGas2005& c, std::size_t k) {
        const double flows[] = {c.q_m, c.q_v, c.q_c, c.q_e};
        return flows[k];
    }
};

class GasHost : public ChannelHost<Gas> {
public:
    /// The module state before each call of mg_tf_param, by the number of the call.
    using States = std::map<std::size_t, ModuleState>;

    using ChannelHost::ChannelHost;

    void make(std::size_t n, const Call& c);
    [[nodiscard]] const States& states() const { return states_; }

    /// Puts a module state in place of the present one.
    void take_over(const ModuleState& state) {
        restore_module_state(state);
        left_by_ = 0;
    }

private:
    void param_gs(std::size_t n, const Call& c);
    void tf_param(std::size_t n, const Call& c);
    void mgn_param(std::size_t n, const Call& c);
    void lifecycle(std::size_t n, const Call& c);
    void routine(std::size_t n, const Call& c);
    void method(Record& record, const Call& c);
    void property(Record& record, const Call& c);

    States states_;
    int left_by_ = 0;  ///< the channel whose gas the module state holds, untouched since; 0 for none
};

}  // namespace fuzz
