// Exported channel functions of totals and intervals, for both media.
#include "frame/channel_call.h"

namespace frame = kalorfix::frame;

namespace {

template <class Calculator>
int int_param(LocVect<Calculator>& registry, int channel, unsigned short integrator, float q_ext,
              float total_host, float q_subst, short exp10, char* status,
              const std::array<float*, 3>& outputs) {
    return frame::channel_call(registry, channel, status, outputs, [=](Calculator& calculator, auto& r) {
        return calculator.int_Param(integrator, q_ext, total_host, q_subst, exp10, r[0], r[1], r[2]);
    });
}

template <class Calculator>
int int_param_1(LocVect<Calculator>& registry, int channel, unsigned short integrator, unsigned short set,
                float time_host, float start_host, float last_result, char* status,
                const std::array<float*, 3>& outputs) {
    return frame::channel_call(registry, channel, status, outputs, [=](Calculator& calculator, auto& r) {
        return calculator.int2_Param(integrator, set, time_host, start_host, last_result, r[0], r[1], r[2]);
    });
}

}  // namespace

int mg_int_param(int channel, unsigned short integrator, float q_ext, float total_host, float q_subst,
                 short exp10, char* status, float* total, float* downtime_part, float* downtime_min) {
    return int_param(frame::gas_channels, channel, integrator, q_ext, total_host, q_subst, exp10, status,
                     {total, downtime_part, downtime_min});
}

int mt_int_param(int channel, unsigned short integrator, float q_ext, float total_host, float q_subst,
                 short exp10, char* status, float* total, float* downtime_part, float* downtime_min) {
    return int_param(frame::heat_channels, channel, integrator, q_ext, total_host, q_subst, exp10, status,
                     {total, downtime_part, downtime_min});
}

int mg_int_param_1(int channel, unsigned short integrator, unsigned short set, float interval_time_host,
                   float interval_start_host, float last_result, char* status, float* interval_time,
                   float* interval_start, float* result) {
    return int_param_1(frame::gas_channels, channel, integrator, set, interval_time_host, interval_start_host,
                       last_result, status, {interval_time, interval_start, result});
}

int mt_int_param_1(int channel, unsigned short integrator, unsigned short set, float interval_time_host,
                   float interval_start_host, float last_result, char* status, float* interval_time,
                   float* interval_start, float* result) {
    return int_param_1(frame::heat_channels, channel, integrator, set, interval_time_host, interval_start_host,
                       last_result, status, {interval_time, interval_start, result});
}
