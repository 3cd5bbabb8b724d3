#include "tools/report/verification.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>

#include "tools/text.h"

namespace kalorfix::tool::report {
namespace {

namespace fs = std::filesystem;

Section& section_of(std::vector<Section>& sections, const Subject& subject) {
    for (Section& section : sections)
        if (section.subject.key == subject.key) return section;
    return sections.emplace_back(Section{subject, {}});
}

void sort_in(std::vector<Section>& sections, const CaseFile& file, const cases::Table& table,
             const std::vector<cases::Finding>& findings) {
    for (const cases::Finding& finding : findings) {
        std::vector<Block>& blocks =
            section_of(sections, subject_of(table.function, finding.where->inputs)).blocks;
        if (blocks.empty() || blocks.back().table != &table) blocks.push_back({&file, &table, {}});
        blocks.back().findings.push_back(finding);
    }
}

CaseFile read_file(const fs::path& path) {
    std::error_code failed;
    std::ifstream in(path);
    if (!in || !fs::is_regular_file(path, failed))
        throw InputError(path.string() + ": cannot read this case file");
    CaseFile file{path.filename().string(), cases::read_tables(in, path.string())};
    if (file.tables.empty()) throw InputError(path.string() + ": holds no table; one begins with [function]");
    return file;
}

}  // namespace

bool is_exact(const cases::Finding& finding) {
    return !(finding.permitted > 0.0) || !std::isfinite(finding.expected->value);
}

double ratio(const cases::Finding& finding) {
    const bool differs = finding.verdict == cases::Verdict::differs_as_declared;
    const double value = std::fabs(finding.deviation) / (differs ? finding.declared : finding.permitted);
    return std::isnan(value) ? std::numeric_limits<double>::infinity() : value;
}

Statistics statistics(const Section& section, const std::string& output) {
    Statistics s;
    double ratios = 0.0, deviations = 0.0;
    const cases::Case* last = nullptr;
    for (const Block& block : section.blocks)
        for (const cases::Finding& finding : block.findings) {
            if (!output.empty() && finding.expected->column != output) continue;
            if (finding.where != last) ++s.cases;
            last = finding.where;
            ++s.values;
            if (!finding.passed()) ++s.failed;
            if (finding.verdict == cases::Verdict::differs_as_declared) ++s.differing;
            if (is_exact(finding)) {
                ++s.exact;
                continue;
            }
            ratios += ratio(finding);
            deviations += std::fabs(finding.deviation);
            s.worst_deviation = std::fmax(s.worst_deviation, std::fabs(finding.deviation));
            if (s.worst == nullptr || ratio(finding) > s.worst_ratio) {
                s.worst = &finding;
                s.worst_file = block.file;
                s.worst_ratio = ratio(finding);
            }
        }
    if (const auto compared = static_cast<double>(s.values - s.exact); compared > 0.0) {
        s.mean_ratio = ratios / compared;
        s.mean_deviation = deviations / compared;
    }
    return s;
}

std::vector<std::string> outputs(const Section& section) {
    std::vector<std::string> names;
    for (const Block& block : section.blocks)
        for (const cases::Finding& finding : block.findings)
            if (std::ranges::find(names, finding.expected->column) == names.end())
                names.push_back(finding.expected->column);
    return names;
}

std::vector<CaseFile> read_cases(const std::string& directory) {
    std::error_code failed;
    if (!fs::is_directory(directory, failed))
        throw InputError("--cases " + directory +
                         ": no such directory; give one that holds case files (*.txt)");
    std::vector<fs::path> paths;
    for (fs::directory_iterator at(directory, failed), end; !failed && at != end; at.increment(failed))
        if (at->path().extension() == ".txt") paths.push_back(at->path());
    if (failed) throw InputError(fmt::format("--cases {}: cannot list it: {}", directory, failed.message()));
    if (paths.empty()) throw InputError("--cases " + directory + ": holds no case file (*.txt)");
    std::sort(paths.begin(), paths.end());
    std::vector<CaseFile> files;
    for (const fs::path& path : paths) files.push_back(read_file(path));
    return files;
}

bool need_gas_data(const std::vector<CaseFile>& files) {
    for (const CaseFile& file : files)
        for (const cases::Table& table : file.tables) {
            if (table.function == "standard_density" || table.function == "gas_by_composition") return true;
            if (table.function != "gas") continue;
            for (const cases::Case& one : table.cases) {
                const auto method = one.inputs.find("method");
                // Methods 0 and 1 take the density.
                if (method != one.inputs.end() && method->second != 0.0 && method->second != 1.0) return true;
            }
        }
    return false;
}

Verification verify(const std::string& library, const std::string& directory, std::vector<CaseFile> files) {
    Verification result{directory, std::move(files), {}};
    for (const CaseFile& file : result.files) {
        const host::Library opened(library);
        for (const cases::Table& table : file.tables) try {
                sort_in(result.sections, file, table, cases::run(opened, table));
            } catch (const InputError& error) {
                throw InputError(fmt::format("{}/{}:{}: {}", directory, file.name, table.line, error.what()));
            }
    }
    const std::vector<std::string> order = subject_order();
    const auto place = [&](const Section& s) { return std::find(order.begin(), order.end(), s.subject.key); };
    std::stable_sort(result.sections.begin(), result.sections.end(),
                     [&](const Section& a, const Section& b) { return place(a) < place(b); });
    return result;
}

std::size_t failures(const Verification& verification) {
    std::size_t count = 0;
    for (const Section& section : verification.sections) count += statistics(section).failed;
    return count;
}

std::string place(const CaseFile& file, const cases::Case& where) {
    return fmt::format("{}:{}", file.name, where.line);
}

std::vector<Declaration> declarations(const Verification& verification, bool each_source) {
    std::vector<Declaration> all;
    for_each_finding(verification, [&](const Section&, const Block& block, const cases::Finding& finding) {
        if (!finding.expected->declared) return;
        const Declaration one{finding.expected->declared->reason, each_source ? block.table->source : ""};
        auto found = std::ranges::find_if(
            all, [&](const Declaration& d) { return d.reason == one.reason && d.source == one.source; });
        if (found == all.end()) found = all.insert(all.end(), one);
        ++found->values;
        if (finding.verdict != cases::Verdict::differs_as_declared) return;
        ++found->differing;
        const double relative = std::fabs(finding.deviation / finding.expected->value);
        if (relative < found->largest) return;
        found->largest = relative;
        found->at = &finding;
        found->file = block.file;
    });
    return all;
}

}  // namespace kalorfix::tool::report
