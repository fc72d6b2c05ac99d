// SPDX-License-Identifier: MIT
// Peers of an X protocol test: further connections and further processes.
#pragma once

// Before Xlib, whose macros None and Bool they cannot stand.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <X11/Xlib.h>

#include <csignal>
#include <functional>
#include <stdexcept>
#include <string>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace peers {

class Connection {
public:
    Connection() : display(XOpenDisplay(nullptr))
    {
        if (!display)
            throw std::runtime_error("no display");
    }
    ~Connection() { XCloseDisplay(display); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    operator Display*() const { return display; }

    Window makeWindow(int width = 200, int height = 150) const
    {
        const Window window =
            XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, width, height, 0, 0, 0);
        XSync(display, False);
        return window;
    }

private:
    Display* display;
};

// A child process that runs work and ends with its result. The destructor kills it.
class Child {
public:
    explicit Child(const std::function<int()>& work) : pid(fork())
    {
        if (pid == 0)
            _exit(work());
    }
    ~Child()
    {
        if (pid > 0) {
            kill(pid, SIGKILL);
            wait();
        }
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    // Exit status, -1 when it did not end by itself.
    int wait()
    {
        int status = 0;
        waitpid(pid, &status, 0);
        pid = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t pid;
};

// What an action of this process writes to standard error.
template<class Action> std::string errorsOf(Action action)
{
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
}

} // namespace peers
