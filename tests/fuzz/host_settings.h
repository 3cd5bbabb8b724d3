// The floating-point settings under which a host calls: the usual ones, or rounding upwards with traps.
#pragma once

#include <array>
#include <cfenv>

#ifdef __SSE2__
#include <xmmintrin.h>
#endif

namespace fuzz {

/// In force for the life of the object; afterwards the usual ones.
class HostSettings {
public:
    explicit HostSettings(bool unusual) : unusual_(unusual) {
        if (unusual_) {
            std::fesetround(FE_UPWARD);
            std::feclearexcept(FE_ALL_EXCEPT);
            feenableexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW);
        }
        before_ = control();
    }
    ~HostSettings() {
        if (!unusual_) return;
        fedisableexcept(FE_ALL_EXCEPT);
        std::fesetround(FE_TONEAREST);
    }
    HostSettings(const HostSettings&) = delete;
    HostSettings& operator=(const HostSettings&) = delete;

    [[nodiscard]] bool unchanged() const { return control() == before_; }

private:
    using Control = std::array<unsigned, 3>;

    static Control control() {
#ifdef __SSE2__
        constexpr unsigned without_flags = 0xffc0;
        const unsigned vector_unit = _mm_getcsr() & without_flags;
#else
        const unsigned vector_unit = 0;
#endif
        return {static_cast<unsigned>(std::fegetround()), static_cast<unsigned>(fegetexcept()), vector_unit};
    }

    bool unusual_;
    Control before_{};
};

}  // namespace fuzz
