#include "core/mail/MailMessage.h"

#include <wx/strconv.h>

#include <algorithm>
#include <cctype>
#include <deque>

namespace {

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string Trim(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos)
        return std::string();
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

int HexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

// A header line is "name:" with a name of printable characters and no blank.
bool IsFieldLine(const std::string& line) {
    const size_t colon = line.find(':');
    if (colon == 0 || colon == std::string::npos)
        return false;
    return std::all_of(line.begin(), line.begin() + static_cast<long>(colon),
                       [](unsigned char c) { return c > 32 && c < 127; });
}

// A part of a message: raw header fields (unfolded, undecoded) and the raw body, with LF line ends.
struct Entity {
    std::vector<std::pair<std::string, std::string>> fields;
    std::string body;

    std::string Field(const std::string& name) const {
        for (const auto& [fieldName, value] : fields)
            if (Lower(fieldName) == name)
                return value;
        return std::string();
    }
};

std::string WithLineFeeds(const std::string& raw) {
    std::string text;
    text.reserve(raw.size());
    for (size_t i = 0; i < raw.size(); ++i)
        if (!(raw[i] == '\r' && i + 1 < raw.size() && raw[i + 1] == '\n'))
            text += raw[i];
    return text;
}

// Header lines until the first empty line; the first line that is neither a field nor a
// continuation means there is no header block at all.
Entity SplitEntity(const std::string& text) {
    Entity entity;
    size_t position = 0;
    while (position < text.size()) {
        size_t end = text.find('\n', position);
        if (end == std::string::npos)
            end = text.size();
        const std::string line = text.substr(position, end - position);
        if (line.empty() && entity.fields.empty())
            return Entity{{}, text};
        if (line.empty()) {
            entity.body = text.substr(std::min(end + 1, text.size()));
            return entity;
        }
        if ((line[0] == ' ' || line[0] == '\t') && !entity.fields.empty())
            entity.fields.back().second += " " + Trim(line);
        else if (IsFieldLine(line)) {
            const size_t colon = line.find(':');
            entity.fields.emplace_back(line.substr(0, colon), Trim(line.substr(colon + 1)));
        } else
            return Entity{{}, text};
        position = end + 1;
    }
    entity.body.clear();
    return entity;
}

// "text/plain; charset=utf-8; format=flowed" -> the lower-case type, and the parameter asked for.
std::string MediaType(const std::string& contentType) {
    return Lower(Trim(contentType.substr(0, contentType.find(';'))));
}

std::string Parameter(const std::string& contentType, const std::string& name) {
    const std::string lower = Lower(contentType);
    size_t at = 0;
    while ((at = lower.find(name + "=", at)) != std::string::npos) {
        if (at > 0 &&
            (std::isalnum(static_cast<unsigned char>(lower[at - 1])) || lower[at - 1] == '-')) {
            at += name.size();
            continue;
        }
        size_t start = at + name.size() + 1;
        if (start < contentType.size() && contentType[start] == '"') {
            const size_t close = contentType.find('"', start + 1);
            return contentType.substr(start + 1, close == std::string::npos ? std::string::npos
                                                                            : close - start - 1);
        }
        const size_t end = contentType.find_first_of("; \t", start);
        return contentType.substr(start,
                                  end == std::string::npos ? std::string::npos : end - start);
    }
    return std::string();
}

std::vector<std::string> SplitMultipart(const std::string& body, const std::string& boundary) {
    std::vector<std::string> parts;
    const std::string delimiter = "--" + boundary;
    size_t position = body.find(delimiter);
    while (position != std::string::npos) {
        size_t start = position + delimiter.size();
        if (body.compare(start, 2, "--") == 0)
            break;
        start = body.find('\n', start);
        if (start == std::string::npos)
            break;
        const size_t next = body.find("\n" + delimiter, start);
        parts.push_back(body.substr(start + 1, next == std::string::npos ? std::string::npos
                                                                         : next - start - 1));
        position = next == std::string::npos ? next : next + 1;
    }
    return parts;
}

struct TextParts {
    const Entity* plain = nullptr;
    const Entity* html = nullptr;
};

// Parts live in a deque: it keeps their addresses while more are added.
void FindTextParts(const Entity& entity, std::deque<Entity>& storage, TextParts& found) {
    const std::string contentType = entity.Field("content-type");
    const std::string type = contentType.empty() ? "text/plain" : MediaType(contentType);
    if (Lower(entity.Field("content-disposition")).rfind("attachment", 0) == 0)
        return;
    if (type.rfind("multipart/", 0) == 0) {
        const std::string boundary = Parameter(contentType, "boundary");
        for (const std::string& part : boundary.empty() ? std::vector<std::string>()
                                                        : SplitMultipart(entity.body, boundary)) {
            storage.push_back(SplitEntity(part));
            FindTextParts(storage.back(), storage, found);
        }
    } else if (type == "text/plain" && !found.plain)
        found.plain = &entity;
    else if (type == "text/html" && !found.html)
        found.html = &entity;
}

wxString DecodedBody(const Entity& entity) {
    const std::string encoding = Lower(Trim(entity.Field("content-transfer-encoding")));
    std::string bytes = entity.body;
    if (encoding == "quoted-printable")
        bytes = MailMessage::DecodeQuotedPrintable(bytes);
    else if (encoding == "base64")
        bytes = MailMessage::DecodeBase64(bytes);
    return MailMessage::DecodeCharset(bytes, Parameter(entity.Field("content-type"), "charset"));
}

} // namespace

MailMessage MailMessage::Parse(const std::string& raw, bool withText) {
    MailMessage message;
    const Entity top = SplitEntity(WithLineFeeds(raw));
    for (const auto& [name, value] : top.fields)
        message.headers.emplace_back(wxString::FromUTF8(name), DecodeHeaderValue(value));
    if (!withText)
        return message;
    if (top.fields.empty()) {
        message.text = DecodeCharset(top.body, "");
        return message;
    }
    std::deque<Entity> storage;
    TextParts found;
    FindTextParts(top, storage, found);
    if (found.plain)
        message.text = DecodedBody(*found.plain);
    else if (found.html)
        message.text = HtmlToText(DecodedBody(*found.html));
    return message;
}

wxString MailMessage::Header(const wxString& name) const {
    for (const auto& [fieldName, value] : headers)
        if (fieldName.IsSameAs(name, false))
            return value;
    return wxString();
}

wxString MailMessage::DecodeHeaderValue(const std::string& value) {
    wxString decoded;
    size_t position = 0;
    bool lastWasEncoded = false;
    while (position < value.size()) {
        const size_t start = value.find("=?", position);
        const size_t charsetEnd = start == std::string::npos ? start : value.find('?', start + 2);
        const size_t textStart = charsetEnd == std::string::npos ||
                                         charsetEnd + 2 >= value.size() ||
                                         value[charsetEnd + 2] != '?'
                                     ? std::string::npos
                                     : charsetEnd + 3;
        const size_t end = textStart == std::string::npos ? textStart : value.find("?=", textStart);
        if (end == std::string::npos) {
            decoded += DecodeCharset(value.substr(position), "");
            break;
        }
        const std::string between = value.substr(position, start - position);
        // Blanks between two encoded words are not part of the text.
        if (!(lastWasEncoded && Trim(between).empty()))
            decoded += DecodeCharset(between, "");
        std::string charset = value.substr(start + 2, charsetEnd - start - 2);
        charset = charset.substr(0, charset.find('*')); // a language suffix
        const char kind =
            static_cast<char>(std::toupper(static_cast<unsigned char>(value[charsetEnd + 1])));
        std::string text = value.substr(textStart, end - textStart);
        if (kind == 'Q') {
            std::replace(text.begin(), text.end(), '_', ' ');
            text = DecodeQuotedPrintable(text);
        } else
            text = DecodeBase64(text);
        decoded += DecodeCharset(text, charset);
        lastWasEncoded = true;
        position = end + 2;
    }
    return decoded;
}

std::string MailMessage::DecodeQuotedPrintable(const std::string& encoded) {
    std::string bytes;
    bytes.reserve(encoded.size());
    for (size_t i = 0; i < encoded.size(); ++i) {
        if (encoded[i] != '=') {
            bytes += encoded[i];
            continue;
        }
        if (i + 1 < encoded.size() && encoded[i + 1] == '\n') { // soft line break
            ++i;
            continue;
        }
        const int high = i + 2 < encoded.size() ? HexValue(encoded[i + 1]) : -1;
        const int low = high < 0 ? -1 : HexValue(encoded[i + 2]);
        if (low < 0) {
            bytes += '=';
            continue;
        }
        bytes += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return bytes;
}

std::string MailMessage::DecodeBase64(const std::string& encoded) {
    static const std::string alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    bytes.reserve(encoded.size() * 3 / 4);
    unsigned int buffer = 0;
    int bits = 0;
    for (char c : encoded) {
        const size_t value = alphabet.find(c);
        if (c == '=')
            break;
        if (value == std::string::npos)
            continue; // line ends and blanks
        buffer = (buffer << 6) | static_cast<unsigned int>(value);
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            bytes += static_cast<char>((buffer >> bits) & 0xFF);
        }
    }
    return bytes;
}

wxString MailMessage::DecodeCharset(const std::string& bytes, const wxString& charset) {
    if (bytes.empty())
        return wxString();
    wxString text;
    if (charset.empty() || charset.IsSameAs("utf-8", false) || charset.IsSameAs("us-ascii", false))
        text = wxString::FromUTF8(bytes.data(), bytes.size());
    else {
        wxCSConv conversion(charset);
        if (conversion.IsOk())
            text = wxString(bytes.data(), conversion, bytes.size());
    }
    return text.empty() ? wxString(bytes.data(), wxConvISO8859_1, bytes.size()) : text;
}

wxString MailMessage::HtmlToText(const wxString& html) {
    static const std::vector<std::pair<wxString, wxString>> entities{
        {"&nbsp;", " "}, {"&lt;", "<"},   {"&gt;", ">"}, {"&quot;", "\""},
        {"&#39;", "'"},  {"&apos;", "'"}, {"&amp;", "&"}};
    static const std::vector<wxString> lineTags{"br",  "/p",  "p",   "/div", "/tr",   "/li",
                                                "/h1", "/h2", "/h3", "/h4",  "/table"};
    wxString text;
    size_t position = 0;
    while (position < html.length()) {
        const size_t open = html.find('<', position);
        text += html.substr(position, open == wxString::npos ? wxString::npos : open - position);
        if (open == wxString::npos)
            break;
        size_t close = html.find('>', open);
        if (close == wxString::npos)
            break;
        wxString name = html.substr(open + 1, close - open - 1).Lower().BeforeFirst(' ');
        if (name.length() > 1 && name.EndsWith("/"))
            name.RemoveLast();
        if (name == "script" || name == "style") {
            const size_t end = html.Lower().find("</" + name, close);
            close = end == wxString::npos ? html.length() - 1 : html.find('>', end);
            if (close == wxString::npos)
                break;
        }
        for (const wxString& lineTag : lineTags)
            if (name == lineTag)
                text += "\n";
        position = close + 1;
    }
    text.Replace("\r", "");
    for (const auto& [entity, character] : entities)
        text.Replace(entity, character);
    wxString collapsed;
    int newlines = 0;
    for (wxUniChar c : text) {
        newlines = c == '\n' ? newlines + 1 : 0;
        if (newlines <= 2)
            collapsed += c;
    }
    return collapsed.Trim().Trim(false);
}
