// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/ScaleStore.h"

#include "platform/image/Plausible.h"
#include "platform/imagewindow/files/ImageNotes.h"

#include <iomanip>
#include <limits>
#include <sstream>

namespace viewer {

namespace {

// More images than anybody calibrates by hand.
constexpr NoteKind scaleNotes{"scales", "kelvora-scale 1", 10000};

bool plausible(float microns)
{
    return image::plausibleSpacing(microns).has_value();
}

std::string sentence(const char* what, int problem)
{
    return problem == 0 ? "" : std::string(what) + ": " + noteProblem(problem) + ".";
}

} // namespace

std::optional<KeptScale> loadScale(const std::filesystem::path& image)
{
    const std::optional<ImageNote> note = loadNote(scaleNotes, image);
    if (!note)
        return std::nullopt;
    std::istringstream text(note->text);
    UserScale scale;
    float z = 0;
    if (!(text >> scale.x >> scale.y >> z) || text.peek() != std::istringstream::traits_type::eof())
        return std::nullopt;
    if (!plausible(scale.x) || !plausible(scale.y) || (z != 0 && !plausible(z)))
        return std::nullopt;
    if (z > 0)
        scale.z = z;
    return KeptScale{scale, note->current};
}

std::string keepScale(const std::filesystem::path& image, const UserScale& scale)
{
    std::ostringstream text;
    text << std::setprecision(std::numeric_limits<float>::max_digits10);
    text << scale.x << ' ' << scale.y << ' ' << scale.z.value_or(0);
    return sentence("The scale holds for this window but cannot be kept",
                    keepNote(scaleNotes, image, text.str()));
}

std::string forgetScale(const std::filesystem::path& image)
{
    return sentence("The scale is kept on, it cannot be removed", forgetNote(scaleNotes, image));
}

} // namespace viewer
