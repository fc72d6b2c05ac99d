// SPDX-License-Identifier: MIT
#include "batch/results/Modules.h"

#include <dlfcn.h>

namespace batch {

namespace {

// The loader looks beside the program, by its run path. A module stays loaded until the program ends.
template<class Function> Function functionOf(const char* module, const char* name)
{
    void* const handle = dlopen(module, RTLD_NOW | RTLD_LOCAL);
    void* const symbol = handle ? dlsym(handle, name) : nullptr;
    if (!symbol)
        throw RunError(std::string("The module ") + module + " cannot be loaded: " + dlerror() + ".");
    return reinterpret_cast<Function>(symbol);
}

} // namespace

WritePlot plotModule()
{
    return functionOf<WritePlot>("batchplots.so", "batchWritePlot");
}

WriteSamples hdf5Module()
{
    return functionOf<WriteSamples>("batchhdf5.so", "batchWriteSamples");
}

} // namespace batch
