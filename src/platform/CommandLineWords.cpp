#include "platform/CommandLineWords.h"

namespace CommandLineWords {

namespace {

bool IsBlank(wxUniChar c) {
    return c == ' ' || c == '\t';
}

// Reads one argument starting at position (blanks before it already skipped).
wxString ReadArgument(const wxString& text, size_t& position) {
    wxString argument;
    bool quoted = false;
    while (position < text.length()) {
        wxUniChar c = text[position];
        if (!quoted && IsBlank(c))
            break;
        if (c == '\\') {
            size_t slashes = 0;
            while (position < text.length() && text[position] == '\\') {
                ++slashes;
                ++position;
            }
            if (position < text.length() && text[position] == '"') {
                argument.append(slashes / 2, '\\');
                if (slashes % 2 == 1) {
                    argument += '"';
                    ++position;
                }
            } else {
                argument.append(slashes, '\\');
            }
            continue;
        }
        if (c == '"') {
            // Inside quotes, a doubled quote stands for one literal quote.
            if (quoted && position + 1 < text.length() && text[position + 1] == '"') {
                argument += '"';
                position += 2;
                continue;
            }
            quoted = !quoted;
            ++position;
            continue;
        }
        argument += c;
        ++position;
    }
    return argument;
}

void SkipBlanks(const wxString& text, size_t& position) {
    while (position < text.length() && IsBlank(text[position]))
        ++position;
}

// Length of the shortest blank-separated prefix that names a program; 0 when none does.
size_t ProgramPrefixLength(const wxString& line,
                           const std::function<bool(const wxString&)>& isExecutable) {
    for (size_t end = 0; end <= line.length(); ++end) {
        if (end < line.length() && !IsBlank(line[end]))
            continue;
        if (end > 0 && !IsBlank(line[end - 1]) && isExecutable(line.Left(end)))
            return end;
    }
    return 0;
}

} // namespace

std::vector<wxString> SplitArguments(const wxString& text) {
    std::vector<wxString> arguments;
    size_t position = 0;
    SkipBlanks(text, position);
    while (position < text.length()) {
        arguments.push_back(ReadArgument(text, position));
        SkipBlanks(text, position);
    }
    return arguments;
}

std::vector<wxString> Split(const wxString& commandLine,
                            const std::function<bool(const wxString&)>& isExecutable) {
    size_t start = 0;
    SkipBlanks(commandLine, start);
    wxString line = commandLine.Mid(start);
    if (line.empty() || line[0] == '"')
        return SplitArguments(line);

    size_t programLength = ProgramPrefixLength(line, isExecutable);
    if (programLength == 0)
        return SplitArguments(line);
    std::vector<wxString> words{line.Left(programLength)};
    for (const wxString& argument : SplitArguments(line.Mid(programLength)))
        words.push_back(argument);
    return words;
}

} // namespace CommandLineWords
