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

// The subject of a case: with a method, of its own or by default, that of the method if there is one.
Subject subject_of(const std::string& function, const cases::Values& inputs) {
    std::string with_method;
    const cases::Values& defaults = cases::procedures().at(function).inputs;
    for (const cases::Values* values : {&defaults, &inputs})
        if (const auto method = values->find("method"); method != values->end())
            with_method = fmt::format("{}.{}", function, static_cast<int>(method->second));
    for (const std::string& key : {with_method, function})
        if (const auto found = std::ranges::find(subjects(), key, &Subject::key); found != subjects().end())
            return *found;
    return {function, function};
}

CaseFile read_file(const fs::path& path) {
    std::ifstream in = open_regular(path.string());
    if (!in) throw InputError(path.string() + ": cannot read this case file: " + why_unreadable(path.string()));
    CaseFile file{path.filename().string(), cases::read_tables(in, path.string())};
    if (file.tables.empty()) throw InputError(path.string() + ": holds no table; one begins with [function]");
    return file;
}

}  // namespace

bool Value::is_exact() const { return !(permitted > 0.0) || !std::isfinite(expected->value); }

double Value::ratio() const {
    const bool differs = verdict == cases::Verdict::differs_as_declared;
    const double value = std::fabs(deviation) / (differs ? declared : permitted);
    return std::isnan(value) ? std::numeric_limits<double>::infinity() : value;
}

std::vector<Values> Section::tables() const {
    std::vector<Values> found;
    for (auto begin = values.begin(); begin != values.end();) {
        const auto end =
            std::find_if(begin, values.end(), [&](const Value& v) { return v.table != begin->table; });
        found.emplace_back(begin, end);
        begin = end;
    }
    return found;
}

std::vector<std::string> Section::outputs() const {
    std::vector<std::string> names;
    for (const Value& value : values)
        if (std::ranges::find(names, value.expected->column) == names.end())
            names.push_back(value.expected->column);
    return names;
}

Statistics statistics(const Section& section, const std::string& output) {
    Statistics s;
    double ratios = 0.0, deviations = 0.0;
    const cases::Case* last = nullptr;
    for (const Value& value : section.values) {
        if (!output.empty() && value.expected->column != output) continue;
        if (value.where != last) ++s.cases;
        last = value.where;
        ++s.values;
        if (!value.passed()) ++s.failed;
        if (value.verdict == cases::Verdict::differs_as_declared) ++s.differing;
        if (value.is_exact()) {
            ++s.exact;
            continue;
        }
        ratios += value.ratio();
        deviations += std::fabs(value.deviation);
        s.worst_deviation = std::fmax(s.worst_deviation, std::fabs(value.deviation));
        if (s.worst && value.ratio() <= s.worst_ratio) continue;
        s.worst = &value;
        s.worst_ratio = value.ratio();
    }
    if (const auto compared = static_cast<double>(s.values - s.exact); compared > 0.0) {
        s.mean_ratio = ratios / compared;
        s.mean_deviation = deviations / compared;
    }
    return s;
}

Statistics totals(const Verification& verification) {
    Statistics all;
    for (const Section& section : verification.sections) {
        const Statistics s = statistics(section);
        all.cases += s.cases;
        all.values += s.values;
        all.differing += s.differing;
        all.failed += s.failed;
    }
    return all;
}

std::vector<Declaration> declarations(const Verification& verification, bool each_source) {
    std::vector<Declaration> all;
    for (const Section& section : verification.sections)
        for (const Value& value : section.values) {
            if (!value.expected->declared) continue;
            const Declaration one{value.expected->declared->reason, each_source ? value.table->source : ""};
            auto found = std::ranges::find_if(
                all, [&](const Declaration& d) { return d.reason == one.reason && d.source == one.source; });
            if (found == all.end()) found = all.insert(all.end(), one);
            ++found->values;
            if (value.verdict != cases::Verdict::differs_as_declared) continue;
            ++found->differing;
            const double relative = std::fabs(value.deviation / value.expected->value);
            if (relative < found->largest) continue;
            found->largest = relative;
            found->at = &value;
        }
    return all;
}

std::vector<CaseFile> read_cases(const std::string& directory) {
    std::error_code failed;
    if (!fs::is_directory(directory, failed))
        throw InputError("--cases " + directory +
                         ": no such directory; give one that holds case files (*.txt)");
    std::vector<fs::path> paths;
    for (fs::directory_iterator at(directory, failed), end; !failed && at != end; at.increment(failed))
        if (at->path().extension() == ".txt") paths.push_back(at->path());
    if (failed) throw InputError("--cases ", directory, ": cannot list it: ", failed.message());
    if (paths.empty())
        throw InputError("--cases " + directory +
                         ": holds no case file; expected *.txt with tables that begin with [function], "
                         "such as those of tests/cases");
    std::ranges::sort(paths);
    std::vector<CaseFile> files;
    for (const fs::path& path : paths) files.push_back(read_file(path));
    return files;
}

bool need_gas_data(const std::vector<CaseFile>& files) {
    for (const CaseFile& file : files)
        for (const cases::Table& table : file.tables) {
            if (table.function == "standard_density" || table.function == "gas_by_composition") return true;
            // Methods 0 and 1 take the density.
            const auto by_composition = [](const cases::Case& one) {
                const auto method = one.inputs.find("method");
                return method != one.inputs.end() && method->second != 0.0 && method->second != 1.0;
            };
            if (table.function == "gas" && std::ranges::any_of(table.cases, by_composition)) return true;
        }
    return false;
}

Verification verify(const std::string& library, const std::string& directory, std::vector<CaseFile> files) {
    Verification result{directory, std::move(files), {}};
    std::vector<Section>& sections = result.sections;
    for (const CaseFile& file : result.files) {
        const host::Library opened(library);
        for (const cases::Table& table : file.tables) try {
                for (const cases::Finding& finding : cases::run(opened, table)) {
                    const Subject subject = subject_of(table.function, finding.where->inputs);
                    const auto key = [](const Section& s) { return s.subject.key; };
                    auto section = std::ranges::find(sections, subject.key, key);
                    if (section == sections.end()) section = sections.insert(section, {subject, {}});
                    section->values.push_back({finding, &file, &table});
                }
            } catch (const InputError& error) {
                throw InputError(directory, "/", file.name, ":", table.line, ": ", error.what());
            }
    }
    std::ranges::stable_sort(sections, {}, [](const Section& section) {
        return std::ranges::find(subjects(), section.subject.key, &Subject::key) - subjects().begin();
    });
    return result;
}

}  // namespace kalorfix::tool::report
