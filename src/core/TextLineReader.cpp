#include "core/TextLineReader.h"

#include <algorithm>

wxString TextLineReader::ReadLine() {
    const size_t start = position;
    const size_t end = std::min(text.find_first_of(L"\r\n", start), text.length());
    position = end;
    if (position < text.length() && text[position] == '\r')
        ++position;
    if (position < text.length() && text[position] == '\n')
        ++position;
    return text.substr(start, end - start);
}
