#include "core/net/VersionCompare.h"

#include <wx/tokenzr.h>

#include <array>
#include <cwchar>

namespace {

using VersionNumbers = std::array<long, 4>;

VersionNumbers Numbers(const wxString& version) {
    VersionNumbers numbers{};
    wxStringTokenizer fields(version, ".,", wxTOKEN_RET_EMPTY_ALL);
    for (long& number : numbers) {
        if (!fields.HasMoreTokens())
            break;
        number = std::wcstol(fields.GetNextToken().wc_str(), nullptr, 10);
    }
    return numbers;
}

} // namespace

int CompareVersions(const wxString& a, const wxString& b) {
    const VersionNumbers first = Numbers(a);
    const VersionNumbers second = Numbers(b);
    for (std::size_t i = 0; i < first.size(); ++i) {
        if (first[i] != second[i])
            return first[i] < second[i] ? 1 : -1;
    }
    return 0;
}
