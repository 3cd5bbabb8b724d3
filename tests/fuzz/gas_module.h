// The gas module state and the gas data file, as a host can lay hands on them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace fuzz {

/// A copy of everything in the module state but the tables.
using ModuleState = std::vector<std::uint8_t>;
[[nodiscard]] ModuleState saved_module_state();
void restore_module_state(const ModuleState& state);

/// Overwrites one number of the module state, whichever `place` says, or of the loaded tables.
void write_module_state(std::uint32_t place, float value, short code);
void write_table(std::uint32_t place, float value);

/// The gas data file of the build, in memory, to be damaged and loaded from there.
class GasFile {
public:
    static GasFile& instance();

    void damage(std::uint32_t place, float value);
    void cut(std::uint32_t length);
    void mend();
    /// Whole values into tables that are allocated already.

    /// Writes the path where the library looks, as Init does.
    void name_to_library() const;
    [[nodiscard]] bool is_whole() const { return whole_; }

private:
    GasFile();

    std::vector<char> content_;
    int descriptor_;
    bool whole_ = true;
};

/// Loads the tables from the file in memory, releases them; Init and Done, which load those of the build. Return what the
/// library returned.
unsigned load_tables();
void release_tables();
unsigned init_library();
unsigned done_library();

/// Whether the loaded tables are those of the build, and what makes them so.
[[nodiscard]] bool tables_whole();
void make_tables_whole();

}  // namespace fuzz
