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
    while (line.size() > narrow_width) {
        const std::size_t room = folded.empty() ? narrow_width : narrow_width - indent;
        const std::size_t blank = line.size() <= room ? line.npos : line.rfind(' ', room);
        if (blank == line.npos || blank == 0) break;
        folded += cat(line.substr(0, blank), "\n", std::string(indent, ' '));
        line.remove_prefix(blank + 1);
    }
    return folded + std::string(line);
}

std::string fold_table(std::string_view table, std::string_view second_from, std::string_view unit) {
    std::string first, second;
    const std::string_view heading = table.substr(0, table.find('\n'));
    const std::size_t cut = heading.find(second_from), kept = heading.find(unit);
    if (cut == table.npos || kept == table.npos) return std::string(table);
    for (std::size_t begin = 0; begin < table.size();) {
        const std::size_t end = std::min(table.find('\n', begin), table.size());
        const std::string_view line = table.substr(begin, end - begin);
        const std::string_view rest = line.substr(std::min(cut, line.size()));
        first += cat(line.substr(0, cut), "\n");
        second += cat(line.substr(0, kept), rest, "\n");
        begin = end + 1;
    }
    return first + second;
}

}  // namespace kalorfix::tool
