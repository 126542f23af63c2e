#pragma once

#include <wx/string.h>

#include <string>
#include <utility>
#include <vector>

// One caught message read from its raw bytes: the header fields (unfolded, encoded words decoded)
// and the text a person reads. The text is the first text/plain part, else the first text/html
// part turned into plain text; transfer encodings (quoted-printable, base64) and the part's
// charset are undone. Bytes that are not a message (no header block) become the text as they are.
class MailMessage {
public:
    // withText false reads the header fields only (for listings).
    static MailMessage Parse(const std::string& raw, bool withText = true);

    // The first field of that name (case ignored), decoded; "" when absent.
    wxString Header(const wxString& name) const;
    const std::vector<std::pair<wxString, wxString>>& Headers() const { return headers; }
    const wxString& Text() const { return text; }

    // Decodes RFC 2047 encoded words ("=?UTF-8?Q?h=C3=A9llo?=") inside a header value.
    static wxString DecodeHeaderValue(const std::string& value);
    static std::string DecodeQuotedPrintable(const std::string& encoded);
    static std::string DecodeBase64(const std::string& encoded);
    // The bytes in charset (UTF-8 when empty; Latin-1 when unknown or undecodable).
    static wxString DecodeCharset(const std::string& bytes, const wxString& charset);
    // Markup removed, entities for the usual characters resolved, block ends as line ends.
    static wxString HtmlToText(const wxString& html);

private:
    std::vector<std::pair<wxString, wxString>> headers;
    wxString text;
};
