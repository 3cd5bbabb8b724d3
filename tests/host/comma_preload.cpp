// Loaded into the tool ahead of it: puts the process under the locale of the environment, which must have a decimal comma.
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <locale>
#include <stdexcept>

namespace {

[[gnu::constructor]] void take_locale() {
    try {
        std::locale::global(std::locale(""));
    } catch (const std::runtime_error&) {
        std::fputs("no such locale\n", stderr);
        std::_Exit(99);
    }
    if (std::setlocale(LC_ALL, "") && std::strcmp(std::localeconv()->decimal_point, ",") == 0) return;
    std::fputs("the locale has no decimal comma\n", stderr);
    std::_Exit(99);
}

}  // namespace
