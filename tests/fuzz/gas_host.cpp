#include "gas_host.h"

#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"

namespace fuzz {
namespace {

std::uint64_t bits(float value) { return std::bit_cast<std::uint32_t>(value); }

bool within(double x, double low, double high) { return low <= x && x <= high; }

bool by_density(short method) { return method == 0 || method == 1; }

// A state as mg_param_gs leaves it, and a composition that adds up.
bool gas_adds_up(const cGas2005& c, bool fractions) {
    return by_density(c.Method) || fractions || within(c.Xi_sum, 90.0, 110.0);
}

}  // namespace

void GasHost::make(std::size_t n, const Call& c) {
    switch (c.kind) {
        case Kind::init_tr:
            return ChannelHost::init_tr(n, c);
        case Kind::param_gs:
            return param_gs(n, c);
        case Kind::tf_param:
            states_[n] = saved_module_state();
            return tf_param(n, c);
        case Kind::param_tr:
            return ChannelHost::param_tr(n, c);
        case Kind::mgn_param:
            return mgn_param(n, c);
        case Kind::int_param:
            return ChannelHost::int_param(n, c);
        case Kind::int_param_1:
            return ChannelHost::int_param_1(n, c);
        case Kind::turn_clock:
            return take_clock(c);
        case Kind::set_downtime:
            ProstoyTime = c.d[0];
            return;
        case Kind::routine:
            return routine(n, c);
        case Kind::write_state:
            left_by_ = 0;
            return write_module_state(c.word, c.f[0], c.code);
        default:
            return lifecycle(n, c);
    }
}

void GasHost::param_gs(std::size_t n, const Call& c) {
    Outputs<3> out(c.unwanted);
    const std::array<float, 20>& f = c.f;
    const int returned = called([&] {
        return mg_param_gs(c.channel, f[15], f[16], f[17], f[18], c.code, c.selector[0], f[0], f[1], f[2], f[3],
                           f[4], f[5], f[6], f[7], f[8], f[9], f[10], f[11], f[12], f[13], f[14], f[19],
                           out.status_at(), out.at(0), out.at(1), out.at(2));
    });
    finish(n, c, returned, out);
    left_by_ = 0;
    if (out.status != 1) return;
    if (out.value[1] != out.untouched) require(out.value[1] > 0.0F && out.value[1] < 0.99991F);
    if (out.value[2] != out.untouched && by_density(c.code))
        require(within(static_cast<double>(out.value[2]), 0.0, 1.0));
    if (gas_adds_up(calculator(c), c.selector[0] != 0)) left_by_ = c.channel;
}

void GasHost::tf_param(std::size_t n, const Call& c) {
    Outputs<5> out(c.unwanted);
    const int returned = called([&] {
        return mg_tf_param(c.channel, c.selector[0], c.selector[1], c.f[0], out.status_at(), out.at(0),
                           out.at(1), out.at(2), out.at(3), out.at(4));
    });
    finish(n, c, returned, out);
    if (exists(c) && left_by_ != c.channel) left_by_ = 0;  // PF5 may have run a method
}

void GasHost::mgn_param(std::size_t n, const Call& c) {
    Outputs<8> out(c.unwanted);
    const int returned = called([&] {
        return mg_mgn_param(c.channel, c.selector[0], c.f[0], c.f[1], c.f[2], c.f[3], out.status_at(),
                            out.at(0), out.at(1), out.at(2), out.at(3), out.at(4), out.at(5), out.at(6),
                            out.at(7));
    });
    finish(n, c, returned, out);
    if (out.status == 1) require(c.selector[0] != 0);
}

void GasHost::lifecycle(std::size_t n, const Call& c) {
    GasFile& file = GasFile::instance();
    left_by_ = 0;
    Record record{n, {}};
    switch (c.kind) {
        case Kind::load_damaged:
            file.damage(c.word, c.f[0]);
            record.bits[0] = load_tables();
            break;
        case Kind::load_cut:
            file.cut(c.word);
            record.bits[0] = load_tables();
            break;
        case Kind::load:
            file.mend();
            record.bits[0] = load_tables();
            break;
        case Kind::release:
            release_tables();
            break;
        case Kind::init:
            record.bits[0] = init_library();
            break;
        case Kind::done:
            record.bits[0] = done_library();
            break;
        default:
            write_table(c.word, c.f[0]);
    }
    note(record);
}

void GasHost::routine(std::size_t n, const Call& c) {
    left_by_ = 0;
    Record record{n, {}};
    c.word % 2U == 0 ? method(record, c) : property(record, c);
    note(record);
}

void GasHost::method(Record& record, const Call& c) {
    const std::array<float, 20>& f = c.f;
    short failed = 7;
    float result = 0.0F;
    const unsigned which = c.word / 2U % 6U;
    if (which < 4) {
        static constexpr decltype(&PF3_1) of_composition[] = {PF3_1, PF3_2, PF3_3, PF3_4};
        result = called([&] { return of_composition[which](f[0], f[1], f[2], failed); });
    } else {
        const auto of_density = which == 4 ? NF1_1 : NF1_2;
        result = called([&] { return of_density(f[0], f[1], f[2], f[3], f[4], f[5], failed); });
    }
    record.bits = {bits(result), static_cast<std::uint64_t>(failed), bits(K)};
    require(failed == 0 || failed == 1);
    const bool limits = f[0] <= 70.0F || f[0] >= 1500.0F || f[2] <= 0.0F || f[2] >= 100.0F || f[1] < 0.0F;
    if (limits) require(failed == 1 && bits(result) == 0);
    if (failed == 0) require(bits(result) == bits(K) && result > 0.0F && std::isfinite(result));
    if (failed == 1 && which >= 2) require(bits(result) == 0);
}

void GasHost::property(Record& record, const Call& c) {
    const std::array<float, 20>& f = c.f;
    const auto left = [&record](float result, const float& variable) {
        record.bits[0] = bits(result);
        require(bits(result) == bits(variable));
    };
    switch (c.word / 2U % 12U) {
        case 0:
            return left(called(PF2), Roc);
        case 1:
            return left(called(PF4_1), Ro);
        case 2:
            return left(called([&] { return PF5(c.word); }), Mu);
        case 3:
            return left(called(PF6), kk);
        case 4:
            return left(called(NF2_1), Ro);
        case 5:
            return left(called([&] { return NF2_2(f[5], f[0], f[2]); }), Ro);
        case 6:
            return left(called(NF3), Mu);
        case 7:
            return left(called(NF4), kk);
        case 8:
            return left(called(NF6), qoi);
        case 9:
            return left(called(NF7), qci);
        default:
            called([&] {
                const auto set = c.word / 2U % 12U == 10 ? PF1_1 : PF1_2;
                set(f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7], f[8], f[9], f[10], f[11], f[12], f[13],
                    f[14]);
                return 0;
            });
            require(NumXi >= 0 && NumXi <= 15);
    }
}

}  // namespace fuzz
