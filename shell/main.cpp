#include "shell/StartUp.h"

#include <cstdio>
#include <exception>

int main(int argc, char** argv)
{
    try {
        return runTool(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "lineprofile: %s\n", error.what());
        return 255;
    }
}
