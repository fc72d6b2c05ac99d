// SPDX-License-Identifier: MIT
// Child processes of the driver, and waiting for conditions.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace drive {

using Milliseconds = std::chrono::milliseconds;
constexpr Milliseconds patience{15000};

// Asks every interval until condition() is true, at most for timeout. True when it became so.
bool waitUntil(const std::function<bool()>& condition, Milliseconds timeout = patience,
               Milliseconds interval = Milliseconds{5});

// A child process. The destructor ends it (SIGTERM, then SIGKILL) and reaps it.
class Process {
public:
    // environment: additions to the present one; an empty value removes the variable.
    explicit Process(std::vector<std::string> command,
                     const std::map<std::string, std::string>& environment = {});
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    pid_t pid() const { return child; }
    bool running();
    // Exit status when it has ended by itself within timeout; 128 + n for signal n.
    std::optional<int> wait(Milliseconds timeout = patience);
    void signal(int number);
    // All that it has written to standard error (standard output) so far.
    std::string errors() const;
    std::string output() const;

private:
    pid_t child = -1;
    std::optional<int> status;
    std::string outputPath, errorPath;
    void poll(int options);
};

} // namespace drive
