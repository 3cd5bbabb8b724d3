// SPDX-License-Identifier: MIT
// Start and end of the library: settings, gas data, downtime.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <ctime>

#include "kalorfix_gas.h"
#include "kalorfix_runtime.h"
#include "runtime/cp866.h"
#include "runtime/files.h"
#include "runtime/float_environment.h"
#include "runtime/units.h"

short Is_already_init = 0;
short Num_gas_trub = 5;
double ProstoyTime = 0.0;

namespace {

constexpr short default_gas_pipelines = 5;
constexpr std::size_t path_size = 100;

constexpr auto cannot_initialise = kalorfix::cp866(U"kalorfix.so: Невозможно проинициализировать библиотеку\n");
static_assert(cannot_initialise.size() - 1 == 55);
constexpr auto settings_not_found = kalorfix::cp866(U"Файл %s%s не найден. Все установки по умолчанию\n\r");

// The settings file stays open between two calls of Init: one file and its index, replaced by the next Init and closed
// when the library is unloaded.
struct SettingsFile {
    IniFile file;
    ~SettingsFile() { file.Close(); }
};
SettingsFile settings;

// The stamp is 12 bytes, little-endian, on every machine: seconds since the Epoch (4, signed), milliseconds (2), minutes
// west of Greenwich (2), daylight-saving flag (2), padding (2). Only the seconds count; a shorter file gives 0.
std::int32_t stamped_seconds(int descriptor) {
    std::array<unsigned char, 12> stamp{};
    const ssize_t length = read(descriptor, stamp.data(), stamp.size());
    if (length < 4) return 0;
    return static_cast<std::int32_t>(kalorfix::little_endian(stamp.data()));
}

// Reads Num_gas_trub from the settings file, or says that there is none.
void ReadSOIni() {
    constexpr const char* file_name = "/tornkntr.ini";
    std::array<char, path_size> path{};
    const bool fits = kalorfix::join_path(path.data(), path.size(), SRV_Path.SETTINGS, file_name);
    constexpr int read_text = 1;
    settings.file.Close();
    settings.file.SetName(path.data());
    settings.file.SetMode(read_text);
    if (!fits || settings.file.Open() != 0) {
        // The whole path, also where it is too long to be opened.
        std::printf(settings_not_found.data(), SRV_Path.SETTINGS ? SRV_Path.SETTINGS : "", file_name);
        return;
    }
    settings.file.CfgGet("TORNOL", nullptr, nullptr, "Num_gas_trub", Num_gas_trub);
    if (Num_gas_trub < 1) Num_gas_trub = default_gas_pipelines;
}

// Builds the path of the gas data file and loads it, if it can.
void InitGas() {
    // An over-long path leaves the buffer empty, and an empty path names no file.
    (void)kalorfix::join_path(PATH_SRAM_FOR_LOADTABL, sizeof PATH_SRAM_FOR_LOADTABL, SRV_Path.SYSTEM,
                              "/gas.dat");
    INIT_GAS();
}

// Measures the controller's downtime into ProstoyTime.
void InitProstoyTime() {
    ProstoyTime = 0.0;
    std::array<char, path_size> path{};
    if (!kalorfix::join_path(path.data(), path.size(), SRV_Path.PATHDB, "/dat/timewait.dat")) return;
    if (!kalorfix::is_regular_or_new(path.data())) return;
    const int file = open(path.data(), O_RDWR | O_CREAT | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0) return;
    const std::int32_t stored = stamped_seconds(file);
    close(file);

    timeval now{};
    gettimeofday(&now, nullptr);
    if (now.tv_sec >= stored)
        ProstoyTime = std::difftime(now.tv_sec, stored) / kalorfix::units::seconds_per_minute;
}

// The whole initialisation; the argument is not used. Non-zero when done.
int InitMisc(char) {
    ReadSOIni();
    InitGas();
    InitProstoyTime();
    return 1;
}

}  // namespace

int Init(void) {
    const kalorfix::FloatEnvironment guard;
    if (Is_already_init != 0) return 1;
    if (InitMisc(0) == 0) {
        std::fwrite(cannot_initialise.data(), 1, cannot_initialise.size() - 1, stderr);
        return 0;
    }
    Is_already_init = 1;
    return 1;
}

int Done(void) {
    if (Is_already_init != 0) REINIT_GAS();
    Is_already_init = 0;
    return 1;
}
