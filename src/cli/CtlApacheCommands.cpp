// kovixctl commands on the virtual hosts of the Apache template and on the help catalogue.
#include "cli/CtlCommand.h"
#include "core/FileErrors.h"
#include "core/TextFiles.h"
#include "core/apache/HelpCatalogue.h"
#include "core/apache/VirtualHostFile.h"
#include "core/lang/LangTable.h"

#include <iostream>
#include <iterator>

namespace {

using OrderedJson = nlohmann::ordered_json;
using JsonType = nlohmann::json::value_t;

OrderedJson TextsToJson(const std::vector<wxString>& texts) {
    OrderedJson array = OrderedJson::array();
    for (const wxString& text : texts)
        array.push_back(Utf8(text));
    return array;
}

OrderedJson DirectoryToJson(const DirectoryRecord& directory) {
    return {{"path", Utf8(directory.path)},           {"FollowSymLinks", directory.FollowSymLinks},
            {"Includes", directory.Includes},         {"Indexes", directory.Indexes},
            {"MultiViews", directory.MultiViews},     {"AllowOverride", directory.AllowOverride},
            {"others", TextsToJson(directory.others)}};
}

OrderedJson HostToJson(const VirtualHostRecord& host) {
    OrderedJson aliases = OrderedJson::array();
    for (const AliasRecord& alias : host.aliases)
        aliases.push_back({{"name", Utf8(alias.name)}, {"folder", Utf8(alias.folder)}});
    OrderedJson directories = OrderedJson::array();
    for (const DirectoryRecord& directory : host.directories)
        directories.push_back(DirectoryToJson(directory));
    return {{"address", Utf8(host.address)},
            {"ServerName", Utf8(host.ServerName)},
            {"ServerAlias", Utf8(host.ServerAlias)},
            {"DocumentRoot", Utf8(host.DocumentRoot)},
            {"aliases", aliases},
            {"directories", directories},
            {"others", TextsToJson(host.others)}};
}

[[noreturn]] void WrongShape(const wxString& what) {
    throw CtlFailure(wxString::Format(GetLangText("CTL_VHOSTS_SHAPE"), what));
}

// What is wrong with the field name, in the words of the language table's key.
[[noreturn]] void WrongField(const char* key, const char* name) {
    WrongShape(wxString::Format(GetLangText(key), name));
}

const nlohmann::json& Field(const nlohmann::json& object, const char* name, JsonType type) {
    const auto found = object.find(name);
    if (found == object.end())
        WrongField("CTL_VHOSTS_MISSING", name);
    if (found->type() != type)
        WrongField("CTL_VHOSTS_WRONG_TYPE", name);
    return *found;
}

// A text of the model; a line end in it would cut its template line in two.
wxString JsonToText(const nlohmann::json& value, const char* name) {
    if (!value.is_string())
        WrongField("CTL_VHOSTS_NOT_TEXTS", name);
    const std::string& text = value.get_ref<const std::string&>();
    if (text.find_first_of("\r\n") != std::string::npos)
        WrongField("CTL_VHOSTS_LINE_END", name);
    return FromUtf8(text);
}

wxString TextField(const nlohmann::json& object, const char* name) {
    return JsonToText(Field(object, name, JsonType::string), name);
}

// A value the template holds between quotes: a quote would end it early and a control character
// (NUL included) breaks the line, so Apache would refuse the whole file.
wxString QuotedField(const nlohmann::json& object, const char* name) {
    const nlohmann::json& value = Field(object, name, JsonType::string);
    for (const char byte : value.get_ref<const std::string&>())
        if (byte == '"' || static_cast<unsigned char>(byte) < 0x20 || byte == 0x7f)
            WrongField("CTL_VHOSTS_QUOTE", name);
    return JsonToText(value, name);
}

bool BoolField(const nlohmann::json& object, const char* name) {
    return Field(object, name, JsonType::boolean).get<bool>();
}

std::vector<wxString> TextsField(const nlohmann::json& object, const char* name) {
    std::vector<wxString> texts;
    for (const nlohmann::json& value : Field(object, name, JsonType::array))
        texts.push_back(JsonToText(value, name));
    return texts;
}

const nlohmann::json& ObjectIn(const nlohmann::json& value, const char* list) {
    if (!value.is_object())
        WrongField("CTL_VHOSTS_NOT_OBJECTS", list);
    return value;
}

DirectoryRecord JsonToDirectory(const nlohmann::json& object) {
    DirectoryRecord directory;
    directory.path = QuotedField(object, "path");
    directory.FollowSymLinks = BoolField(object, "FollowSymLinks");
    directory.Includes = BoolField(object, "Includes");
    directory.Indexes = BoolField(object, "Indexes");
    directory.MultiViews = BoolField(object, "MultiViews");
    directory.AllowOverride = BoolField(object, "AllowOverride");
    directory.others = TextsField(object, "others");
    return directory;
}

VirtualHostRecord JsonToHost(const nlohmann::json& object) {
    VirtualHostRecord host;
    host.address = TextField(object, "address");
    host.ServerName = QuotedField(object, "ServerName");
    host.ServerAlias = QuotedField(object, "ServerAlias");
    host.DocumentRoot = QuotedField(object, "DocumentRoot");
    for (const nlohmann::json& alias : Field(object, "aliases", JsonType::array))
        host.aliases.push_back({QuotedField(ObjectIn(alias, "aliases"), "name"),
                                QuotedField(ObjectIn(alias, "aliases"), "folder")});
    for (const nlohmann::json& directory : Field(object, "directories", JsonType::array))
        host.directories.push_back(JsonToDirectory(ObjectIn(directory, "directories")));
    host.others = TextsField(object, "others");
    return host;
}

// The hosts of a virtual-host document; its "path" is not used: the template is the tree's.
std::vector<VirtualHostRecord> JsonToHosts(const std::string& text) {
    nlohmann::json document;
    try {
        document = nlohmann::json::parse(text);
    } catch (const nlohmann::json::parse_error& error) {
        // The parser quotes what it last read, which may be the bytes that are no UTF-8.
        wxString message = FromUtf8(error.what());
        if (message.empty())
            message = wxString(error.what(), wxConvISO8859_1);
        throw CtlFailure(wxString::Format(GetLangText("JSON_MALFORMED"), message));
    }
    if (!document.is_object())
        WrongShape(GetLangText("CTL_VHOSTS_NOT_OBJECT"));
    std::vector<VirtualHostRecord> hosts;
    for (const nlohmann::json& host : Field(document, "hosts", JsonType::array))
        hosts.push_back(JsonToHost(ObjectIn(host, "hosts")));
    return hosts;
}

std::string ReadInput(const wxString& name) {
    if (name == "-")
        return std::string(std::istreambuf_iterator<char>(std::cin), {});
    std::string bytes;
    if (!TextFiles::ReadBytes(name, bytes))
        throw CtlFailure(FileErrors::CannotRead(name));
    return bytes;
}

VirtualHostFile LoadTemplate(CtlContext& context) {
    VirtualHostFile file;
    if (!LoadVirtualHostFile(file, context.paths))
        throw CtlFailure(FileErrors::CannotRead(file.path));
    return file;
}

wxString CellText(const wxString& text) {
    return text.empty() ? wxString("-") : text;
}

void PrintHosts(CtlContext& context, const std::vector<VirtualHostRecord>& hosts) {
    std::vector<std::vector<wxString>> rows = {
        {"address", "ServerName", "ServerAlias", "DocumentRoot", "aliases", "directories"}};
    for (const VirtualHostRecord& host : hosts)
        rows.push_back({CellText(host.address), CellText(host.ServerName),
                        CellText(host.ServerAlias), CellText(host.DocumentRoot),
                        wxString::Format("%zu", host.aliases.size()),
                        wxString::Format("%zu", host.directories.size())});
    context.PrintTable(rows);
}

void PrintCatalogueEntry(CtlContext& context, const wxString& description, const wxString& link) {
    if (context.json) {
        context.PrintJson({{"description", Utf8(description)}, {"link", Utf8(link)}});
        return;
    }
    context.Print(wxString(description).Trim(true).Trim(false));
    if (!link.empty())
        context.Print(link);
}

} // namespace

namespace CtlCommands {

void VirtualHosts(CtlContext& context) {
    context.ExpectArgCount(0, 0);
    const VirtualHostFile file = LoadTemplate(context);
    if (!context.json) {
        PrintHosts(context, file.hosts);
        return;
    }
    OrderedJson hosts = OrderedJson::array();
    for (const VirtualHostRecord& host : file.hosts)
        hosts.push_back(HostToJson(host));
    const OrderedJson document = {{"path", Utf8(file.path)}, {"hosts", hosts}};
    context.Print(FromUtf8(document.dump()));
}

void ImportVirtualHosts(CtlContext& context) {
    context.ExpectArgCount(1, 1);
    VirtualHostFile file;
    file.hosts = JsonToHosts(ReadInput(context.Arg(0)));
    file.path = context.paths.ApacheSourceConfig();
    if (!WriteVirtualHosts(file))
        throw CtlFailure(FileErrors::CannotWrite(file.path));
}

void CatalogueModule(CtlContext& context) {
    context.ExpectArgCount(1, 1);
    const HelpCatalogue& catalogue = HelpCatalogue::Get();
    PrintCatalogueEntry(context, catalogue.ModuleDescription(context.Arg(0)),
                        catalogue.ModuleLink(context.Arg(0)));
}

void CatalogueExtension(CtlContext& context) {
    context.ExpectArgCount(1, 1);
    const HelpCatalogue& catalogue = HelpCatalogue::Get();
    PrintCatalogueEntry(context, catalogue.ExtensionDescription(context.Arg(0)),
                        catalogue.ExtensionLink(context.Arg(0)));
}

} // namespace CtlCommands
