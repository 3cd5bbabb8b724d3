// Search for the inputs that cost an iteration most steps: at random, then uphill from the slowest.
#pragma once

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace slowest {

/// A point of the unit cube, one coordinate an input.
using Point = std::vector<double>;

struct Found {
    int steps = 0;
    int median = 0;  ///< of the random points
    Point at;
};

/// `steps(point)` is the work to be made large; 0 for inputs that are refused before any iteration.
template <class Steps>
Found search(std::size_t dimensions, unsigned seed, int samples, int climbs, Steps&& steps) {
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    Found found;
    std::vector<int> seen;
    Point point(dimensions);
    const auto consider = [&] {
        const int count = steps(point);
        if (count >= found.steps) {
            found.steps = count;
            found.at = point;
        }
        return count;
    };
    for (int n = 0; n < samples; ++n) {
        for (double& x : point) x = unit(random);
        if (const int count = consider(); count > 0) seen.push_back(count);
    }
    std::sort(seen.begin(), seen.end());
    if (!seen.empty()) found.median = seen[seen.size() / 2];
    // Steps of all sizes, in one coordinate or in all: the slow inputs lie in spots of all sizes.
    for (int n = 0; n < climbs; ++n) {
        point = found.at;
        const double reach = std::pow(10.0, -15.0 * unit(random));
        const auto only = static_cast<std::size_t>(random() % (dimensions + 1));
        for (std::size_t k = 0; k < dimensions; ++k)
            if (only == dimensions || only == k)
                point[k] = std::clamp(point[k] + reach * (2.0 * unit(random) - 1.0), 0.0, 1.0);
        consider();
    }
    return found;
}

inline double linear(double unit, double low, double high) { return low + unit * (high - low); }
inline double logarithmic(double unit, double low, double high) { return low * std::pow(high / low, unit); }

}  // namespace slowest
