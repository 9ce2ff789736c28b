#include "mngctl/application.h"

#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <iostream>

int main(int count, char** words) {
    // For the prompt, which edits characters rather than bytes. Where no locale is set up, as on a
    // serial console, the texts are UTF-8 all the same.
    std::setlocale(LC_CTYPE, "");
    if (MB_CUR_MAX == 1) {
        std::setlocale(LC_CTYPE, "C.UTF-8");
    }
    const bool terminal = ::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0;
    return static_cast<int>(mngctl::runApplication({words + 1, words + count},
                                                   {std::cin, std::cout, std::cerr, terminal}));
}
