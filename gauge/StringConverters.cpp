// SPDX-License-Identifier: MIT
#include "gauge/ClassRecord.h"
#include "gauge/LinearGaugeP.h"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>
#include <optional>
#include <span>
#include <string_view>
#include <system_error>

namespace {

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blank = " \t\n";
    text.remove_prefix(std::min(text.find_first_not_of(blank), text.size()));
    return text.substr(0, text.find_last_not_of(blank) + 1);
}

// Reads as in the C locale, whatever the user's locale, so that a resource file means the same everywhere.
template<class Number> std::optional<Number> parsed(std::string_view text)
{
    Number value;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

struct Name {
    std::string_view name; // as in XrtGauge.h, but in small letters and without the prefix
    int value;
};

struct Enumeration {
    const char* type;
    std::string_view prefix;
    std::span<const Name> names;
};

constexpr Name borders[] = {{"shadow_in", XRTGA_BORDER_SHADOW_IN},
                            {"shadow_out", XRTGA_BORDER_SHADOW_OUT},
                            {"etched_in", XRTGA_BORDER_ETCHED_IN},
                            {"none", XRTGA_BORDER_NONE},
                            {"etched_out", XRTGA_BORDER_ETCHED_OUT}};
constexpr Name orientations[] = {{"vertical", XRTGA_VERTICAL}, {"horizontal", XRTGA_HORIZONTAL}};
constexpr Name directions[] = {{"ascending", XRTGA_ASCENDING}, {"descending", XRTGA_DESCENDING}};
constexpr Name precisions[] = {{"as_set", XRTGA_PRECISION_AS_SET},
                               {"by_range", XRTGA_PRECISION_BY_RANGE},
                               {"if_default", XRTGA_PRECISION_IF_DEFAULT}};

constexpr Enumeration enumerations[] = {{XmRXrtGaBorder, "xrtga_border_", borders},
                                        {XmRXrtGaOrientation, "xrtga_", orientations},
                                        {XmRXrtGaDirection, "xrtga_", directions},
                                        {XmRXrtGaPrecisionUse, "xrtga_precision_", precisions}};

bool startsWith(std::string_view text, std::string_view start)
{
    return text.size() >= start.size() && strncasecmp(text.data(), start.data(), start.size()) == 0;
}

// A name with or without its prefix, in large or small letters, or its number.
std::optional<int> valueOf(const Enumeration& enumeration, std::string_view text)
{
    if (const std::optional<int> number = parsed<int>(text))
        return number;
    if (startsWith(text, enumeration.prefix))
        text.remove_prefix(enumeration.prefix.size());
    for (const Name& name : enumeration.names)
        if (text.size() == name.name.size() && startsWith(text, name.name))
            return name.value;
    return std::nullopt;
}

// Returns a value as the toolkit demands of a converter: in the memory that the caller gives, or in static
// memory where the caller gives none.
template<class Value>
Boolean handOver(Display* display, XrmValue* from, XrmValue* to, const char* type,
                 const std::optional<Value>& value)
{
    static Value result;
    if (!value) {
        XtDisplayStringConversionWarning(display, from->addr, type);
        return False;
    }
    const bool roomGiven = to->addr != nullptr;
    const auto size =
        static_cast<unsigned>(sizeof(Value)); // NOLINT(bugprone-sizeof-expression): of a Widget, too
    const bool fits = !roomGiven || to->size >= size;
    to->size = size;
    if (!fits)
        return False;
    result = *value;
    if (roomGiven)
        std::memcpy(to->addr, &result, size);
    else
        to->addr = reinterpret_cast<XPointer>(&result);
    return True;
}

Boolean convertToDouble(Display* display, XrmValue*, Cardinal*, XrmValue* from, XrmValue* to, XtPointer*)
{
    return handOver(display, from, to, XmRXrtGaDouble, parsed<double>(trimmed(from->addr)));
}

// The argument is the enumeration.
Boolean convertToEnumeration(Display* display, XrmValue* args, Cardinal*, XrmValue* from, XrmValue* to,
                             XtPointer*)
{
    const auto& enumeration = *reinterpret_cast<const Enumeration*>(args[0].addr);
    return handOver(display, from, to, enumeration.type, valueOf(enumeration, trimmed(from->addr)));
}

std::optional<Widget> scaleNamed(Widget gauge, std::string_view name)
{
    if (!XtIsSubclass(gauge, xmXrtGaLinearGaugeWidgetClass))
        return std::nullopt;
    for (Widget scale : itemsOf(reinterpret_cast<LinearGaugeRec*>(gauge)->gauge.scales))
        if (XtName(scale) == name)
            return scale;
    return std::nullopt;
}

// The argument is the tick's nearest widget, which is its gauge.
Boolean convertToScale(Display* display, XrmValue* args, Cardinal*, XrmValue* from, XrmValue* to, XtPointer*)
{
    Widget gauge = *reinterpret_cast<Widget*>(args[0].addr);
    return handOver(display, from, to, XmRXrtGaScale, scaleNamed(gauge, trimmed(from->addr)));
}

} // namespace

void registerStringConverters()
{
    XtSetTypeConverter(XmRString, XmRXrtGaDouble, convertToDouble, nullptr, 0, XtCacheNone, nullptr);
    static XtConvertArgRec arguments[std::size(enumerations)]; // the toolkit keeps the addresses of arguments
    for (std::size_t i = 0; i < std::size(enumerations); ++i) {
        arguments[i] = {XtAddress, const_cast<Enumeration*>(&enumerations[i]), sizeof(Enumeration)};
        XtSetTypeConverter(XmRString, enumerations[i].type, convertToEnumeration, &arguments[i], 1,
                           XtCacheNone, nullptr);
    }
    static XtConvertArgRec gauge = {
        XtWidgetBaseOffset, reinterpret_cast<XtPointer>(XtOffsetOf(WidgetRec, core.self)), sizeof(Widget)};
    XtSetTypeConverter(XmRString, XmRXrtGaScale, convertToScale, &gauge, 1, XtCacheNone, nullptr);
}
