// SPDX-License-Identifier: MIT
#include "drive/Process.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace drive {

namespace {

std::string readFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string makeTemporary(const char* kind)
{
    std::string path = std::string("/tmp/drive-") + kind + "-XXXXXX";
    const int file = mkstemp(path.data());
    if (file < 0)
        throw std::runtime_error("cannot make a temporary file");
    close(file);
    return path;
}

std::vector<std::string> mergedEnvironment(const std::map<std::string, std::string>& additions)
{
    std::vector<std::string> merged;
    for (char** entry = environ; *entry; ++entry) {
        const std::string text = *entry;
        if (!additions.contains(text.substr(0, text.find('='))))
            merged.push_back(text);
    }
    for (const auto& [name, value] : additions)
        if (!value.empty())
            merged.push_back(std::string(name).append("=").append(value));
    return merged;
}

std::vector<char*> pointers(std::vector<std::string>& texts)
{
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

// The sanitizers slow every program down, so that every wait takes longer.
#ifdef __SANITIZE_ADDRESS__
constexpr int slowness = 4;
#else
constexpr int slowness = 1;
#endif

} // namespace

bool waitUntil(const std::function<bool()>& condition, Milliseconds timeout, Milliseconds interval)
{
    const auto end = std::chrono::steady_clock::now() + slowness * timeout;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(interval);
    }
    return true;
}

Process::Process(std::vector<std::string> command, const std::map<std::string, std::string>& environment)
    : outputPath(makeTemporary("out")), errorPath(makeTemporary("err"))
{
    std::vector<std::string> variables = mergedEnvironment(environment);
    const std::vector<char*> arguments = pointers(command), settings = pointers(variables);
    child = fork();
    if (child < 0)
        throw std::runtime_error("cannot start " + command.front());
    if (child > 0)
        return;
    dup2(open(outputPath.c_str(), O_WRONLY | O_TRUNC), STDOUT_FILENO);
    dup2(open(errorPath.c_str(), O_WRONLY | O_TRUNC), STDERR_FILENO);
    execvpe(arguments[0], arguments.data(), settings.data());
    std::fprintf(stderr, "cannot run %s: %s\n", arguments[0], std::strerror(errno));
    _exit(127);
}

Process::~Process()
{
    if (running()) {
        kill(child, SIGTERM);
        if (!wait(Milliseconds{3000})) {
            kill(child, SIGKILL);
            poll(0);
        }
    }
    unlink(outputPath.c_str());
    unlink(errorPath.c_str());
}

void Process::poll(int options)
{
    int code = 0;
    if (!status && waitpid(child, &code, options) == child)
        status = WIFEXITED(code) ? WEXITSTATUS(code) : 128 + WTERMSIG(code);
}

bool Process::running()
{
    poll(WNOHANG);
    return !status;
}

std::optional<int> Process::wait(Milliseconds timeout)
{
    waitUntil([this] { return !running(); }, timeout);
    return status;
}

void Process::signal(int number)
{
    if (running())
        kill(child, number);
}

std::string Process::errors() const
{
    return readFile(errorPath);
}

std::string Process::output() const
{
    return readFile(outputPath);
}

} // namespace drive
