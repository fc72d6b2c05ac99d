// SPDX-License-Identifier: MIT
// What a window has told, with its times: the latest messages, the newest last. Pure.
#pragma once

#include <ctime>
#include <deque>
#include <string>

namespace viewer {

constexpr std::size_t maxMessages = 500, maxMessageLength = 1000; // kept; bytes of one

class MessageLog {
public:
    struct Message {
        std::time_t time;
        std::string text;
        friend bool operator==(const Message&, const Message&) = default;
    };
    void add(const std::string& text, std::time_t now);
    // A state of affairs: told when it becomes another one, empty when all is well.
    void follow(const std::string& text, std::time_t now);
    const std::deque<Message>& messages() const { return kept; }
    // Grows with each message.
    unsigned long version() const { return count; }

private:
    std::deque<Message> kept;
    std::string followed;
    unsigned long count = 0;
};

// Lines "14:05:09  sentence", times in the zone of the process.
std::string messageLines(const MessageLog& log);

} // namespace viewer
