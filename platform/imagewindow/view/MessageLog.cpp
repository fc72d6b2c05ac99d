// SPDX-License-Identifier: MIT
#include "platform/imagewindow/view/MessageLog.h"

#include "platform/text/Utf8.h"

namespace viewer {

void MessageLog::add(const std::string& text, std::time_t now)
{
    if (text.empty())
        return;
    kept.push_back({now, text::shortened(text, maxMessageLength)});
    if (kept.size() > maxMessages)
        kept.pop_front();
    ++count;
}

void MessageLog::follow(const std::string& text, std::time_t now)
{
    if (text == followed)
        return;
    followed = text;
    add(text, now);
}

std::string messageLines(const MessageLog& log)
{
    std::string lines;
    for (const MessageLog::Message& message : log.messages()) {
        char time[16] = "";
        std::tm parts{};
        localtime_r(&message.time, &parts);
        std::strftime(time, sizeof time, "%H:%M:%S", &parts);
        lines += (lines.empty() ? "" : "\n") + std::string(time) + "  " + message.text;
    }
    return lines;
}

} // namespace viewer
