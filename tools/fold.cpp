#include "tools/fold.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>

#include "tools/text.h"

namespace kalorfix::tool {

bool narrow_terminal(std::size_t needed) {
    winsize size{};
    return isatty(STDOUT_FILENO) == 1 && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 &&
           size.ws_col < needed;
}

std::string fold_at(std::string_view line, std::size_t column, std::size_t indent) {
    if (line.size() <= column) return std::string(line);
    return cat(line.substr(0, column), "\n", std::string(indent, ' '), line.substr(column));
}

std::string fold_words(std::string_view line, std::size_t indent) {
    std::string folded;
    for (std::size_t room = narrow_width; line.size() > room; room = narrow_width - indent) {
        const std::size_t blank = line.rfind(' ', room);
        if (blank == line.npos || blank == 0) break;
        folded += cat(line.substr(0, blank), "\n", std::string(indent, ' '));
        line.remove_prefix(blank + 1);
    }
    return folded + std::string(line);
}

std::string fold_lines(std::string_view text, std::size_t indent) {
    std::string folded;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        folded += fold_words(text.substr(begin, end - begin), indent) + "\n";
        begin = end + 1;
    }
    return folded;
}

std::string fold_table(std::string_view table, const std::vector<std::string_view>& from,
                       std::string_view unit) {
    const std::string_view heading = table.substr(0, table.find('\n'));
    // Numbers may begin before the name of their column, and end where the name before it does.
    std::vector<std::size_t> cuts{0};
    for (const std::string_view name : from)
        cuts.push_back(heading.find_last_not_of(' ', heading.find(name) - 1) + 1);
    const std::string_view kept = heading.substr(0, heading.find(unit));
    std::string folded;
    for (std::size_t k = 0; k < cuts.size(); ++k)
        for (std::size_t begin = 0; begin < table.size();) {
            const std::size_t end = std::min(table.find('\n', begin), table.size());
            const std::string_view line = table.substr(begin, end - begin);
            if (k > 0) folded += line.substr(0, kept.size());
            folded += line.substr(std::min(cuts[k], line.size()),
                                  k + 1 < cuts.size() ? cuts[k + 1] - cuts[k] : line.npos);
            folded += '\n';
            begin = end + 1;
        }
    return folded;
}

}  // namespace kalorfix::tool
