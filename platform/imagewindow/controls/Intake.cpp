// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/Intake.h"

#include "platform/image/ImageFile.h"
#include "platform/imagewindow/controls/Desk.h"
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

void fail(const Entrance& entrance, const std::string& sentence)
{
    showError(entrance.shell, title, sentence);
    if (entrance.note)
        entrance.note(sentence);
}

} // namespace

Entrance entranceOf(Desk& desk)
{
    return {desk.shell, desk.program.open,
            [&desk](const std::string& sentence) { desk.actions.note(sentence); }};
}

bool openAll(const Entrance& entrance, const std::vector<std::string>& paths, const std::string& problem)
{
    std::string problems = problem;
    for (const std::string& path : paths)
        try {
            entrance.open(path);
        } catch (const image::ImageError& error) {
            problems += (problems.empty() ? "" : " ") + std::string(error.what());
        }
    if (!problems.empty())
        fail(entrance, problems);
    return problems.empty();
}

Intake::Intake(Entrance given)
    : entrance(std::move(given)), text(entrance.shell),
      target(entrance.shell, [this](const SelectionText::Answer& answer) { take(answer); })
{
}

void Intake::paste()
{
    askNext(0);
}

void Intake::askNext(std::size_t question)
{
    if (question == std::size(questions))
        return fail(entrance, "There is no text to paste: copy the path of a file first.");
    Display* display = XtDisplay(entrance.shell);
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
        return fail(entrance, "What was dropped cannot be taken: " + answer.problem + ".");
    const PathList list = pathsOf(answer.text);
    openAll(entrance, list.paths, list.problem);
}

} // namespace viewer
