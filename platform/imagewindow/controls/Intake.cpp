// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Intake.h"

#include "platform/image/ImageFile.h"
#include "platform/imagewindow/controls/Messages.h"
#include "platform/imagewindow/files/PathList.h"

#include <cctype>
#include <iterator>
#include <utility>

namespace viewer {

namespace {

constexpr const char* title = "Cannot open image";

// What is asked for, one after the other until one holds text.
constexpr struct {
    const char *selection, *target;
} questions[] = {
    {"CLIPBOARD", "UTF8_STRING"},
    {"CLIPBOARD", "STRING"},
    {"PRIMARY", "UTF8_STRING"},
    {"PRIMARY", "STRING"},
};

} // namespace

bool openAll(Widget shell, const OpenFile& open, const std::vector<std::string>& paths,
             const std::string& problem)
{
    std::string problems = problem;
    for (const std::string& path : paths)
        try {
            open(path);
        } catch (const image::ImageError& error) {
            problems += (problems.empty() ? "" : " ") + std::string(error.what());
        }
    if (!problems.empty())
        showError(shell, title, problems);
    return problems.empty();
}

Intake::Intake(Widget shell, OpenFile open)
    : shell(shell), open(std::move(open)), text(shell),
      target(shell, [this](const SelectionText::Answer& answer) { take(answer); })
{
}

void Intake::paste()
{
    askNext(0);
}

void Intake::askNext(std::size_t question)
{
    if (question == std::size(questions))
        return showError(shell, title, "There is no text to paste: copy the path of a file first.");
    Display* display = XtDisplay(shell);
    text.ask(XInternAtom(display, questions[question].selection, False),
             XInternAtom(display, questions[question].target, False), XtLastTimestampProcessed(display),
             [this, question](const SelectionText::Answer& answer) {
                 if (answer.text.empty())
                     askNext(question + 1);
                 else
                     take(answer);
             });
}

void Intake::take(const SelectionText::Answer& answer)
{
    if (!answer.problem.empty())
        return showError(shell, title, "What was dropped cannot be taken: " + answer.problem + ".");
    const PathList list = pathsOf(answer.text);
    openAll(shell, open, list.paths, list.problem);
}

} // namespace viewer
