// SPDX-License-Identifier: MIT
#include "shell/StartUp.h"

#include <csignal>
#include <cstdio>
#include <exception>

int main(int argc, char** argv)
{
    // A file that grows beyond the user's limit is a write that fails, not the end of the tool.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return runTool(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "lineprofile: %s\n", error.what());
        return 255;
    }
}
