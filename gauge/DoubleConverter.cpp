#include "gauge/ClassRecord.h"
#include "gauge/LinearGaugeP.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string_view>
#include <system_error>

namespace {

// Reads like the C locale whatever the user's is, so that a resource file means the same everywhere.
bool parseDouble(std::string_view text, double& value)
{
    constexpr std::string_view blank = " \t\n";
    text.remove_prefix(std::min(text.find_first_not_of(blank), text.size()));
    text = text.substr(0, text.find_last_not_of(blank) + 1);
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

Boolean convertStringToDouble(Display* display, XrmValue*, Cardinal*, XrmValue* from, XrmValue* to,
                              XtPointer*)
{
    static double result; // the toolkit's convention for callers that bring no room
    double value;
    if (!parseDouble(from->addr, value)) {
        XtDisplayStringConversionWarning(display, from->addr, XmRXrtGaDouble);
        return False;
    }
    bool roomGiven = to->addr != nullptr;
    bool fits = !roomGiven || to->size >= sizeof(double);
    to->size = sizeof(double);
    if (!fits)
        return False;
    result = value;
    if (roomGiven)
        std::memcpy(to->addr, &value, sizeof value);
    else
        to->addr = reinterpret_cast<XPointer>(&result);
    return True;
}

} // namespace

void registerDoubleConverter()
{
    XtSetTypeConverter(XmRString, XmRXrtGaDouble, convertStringToDouble, nullptr, 0, XtCacheNone, nullptr);
}
