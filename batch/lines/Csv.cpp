// SPDX-License-Identifier: MIT
#include "batch/lines/Csv.h"

namespace batch {

namespace {

constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";

char separatorOf(std::string_view text)
{
    const std::string_view head = text.substr(0, text.find_first_of("\r\n"));
    const std::size_t found = head.find_first_of(",;\t");
    return found == std::string_view::npos ? ',' : head[found];
}

} // namespace

CsvReader::CsvReader(std::string_view whole) : text(whole)
{
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    separator = separatorOf(text);
}

// Steps over the end of a line, of either kind.
void CsvReader::endLine()
{
    if (at < text.size() && text[at] == '\r')
        ++at;
    if (at < text.size() && text[at] == '\n')
        ++at;
    ++present;
}

// Appends one field; true when another one follows in the record.
bool CsvReader::readField(std::string& field)
{
    if (at < text.size() && text[at] == '"') {
        for (++at;; ++at) {
            const std::size_t end = text.find('"', at);
            unclosed = end == std::string_view::npos;
            const std::string_view part = text.substr(at, unclosed ? text.size() - at : end - at);
            field += part;
            for (const char c : part)
                present += c == '\n';
            at = unclosed ? text.size() : end + 1;
            if (at >= text.size() || text[at] != '"')
                break;
            field += '"'; // a doubled quote stands for one
        }
    }
    while (at < text.size() && text[at] != separator && text[at] != '\r' && text[at] != '\n')
        field += text[at++];
    if (at >= text.size() || text[at] != separator)
        return false;
    ++at;
    return true;
}

bool CsvReader::next(std::vector<std::string>& fields)
{
    while (at < text.size() && (text[at] == '\r' || text[at] == '\n'))
        endLine();
    if (at >= text.size())
        return false;
    recordLine = present;
    unclosed = false;
    std::size_t count = 0;
    for (bool more = true; more; ++count) {
        if (count == fields.size())
            fields.emplace_back();
        fields[count].clear();
        more = readField(fields[count]);
    }
    fields.resize(count);
    endLine();
    return true;
}

void appendField(std::string& row, std::string_view text)
{
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        row += text;
        return;
    }
    row += '"';
    for (const char c : text)
        row.append(c == '"' ? 2 : 1, c);
    row += '"';
}

} // namespace batch
