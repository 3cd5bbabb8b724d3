// SPDX-License-Identifier: MIT
// Loaded into the tool ahead of it: puts the process under the locale of the environment, which must have a decimal comma.
#include <clocale>
#include <cstdlib>
#include <locale>

[[gnu::constructor]] static void take_locale() {
    std::locale::global(std::locale(""));  // without it the process ends here
    if (std::localeconv()->decimal_point[0] != ',') std::_Exit(99);
}
