#include "apache/HelpCatalogue.h"

#include <wx/tokenzr.h>

#include <gtest/gtest.h>

#include <set>

namespace {

// The names the configuration dialogs look up: LoadModule names and extension= names.
const char* const moduleNames =
    "actions_module alias_module asis_module auth_basic_module auth_digest_module "
    "authn_alias_module authn_anon_module authn_dbd_module authn_dbm_module authn_default_module "
    "authn_file_module authnz_ldap_module authz_dbm_module authz_default_module "
    "authz_groupfile_module authz_host_module authz_owner_module authz_user_module "
    "autoindex_module cache_module cern_meta_module cgi_module charset_lite_module dav_module "
    "dav_fs_module dav_lock_module dbd_module deflate_module dir_module disk_cache_module "
    "dumpio_module env_module expires_module ext_filter_module file_cache_module filter_module "
    "headers_module ident_module imagemap_module include_module info_module isapi_module "
    "ldap_module logio_module log_config_module log_forensic_module mem_cache_module mime_module "
    "mime_magic_module negotiation_module proxy_module proxy_ajp_module proxy_balancer_module "
    "proxy_connect_module proxy_ftp_module proxy_http_module rewrite_module setenvif_module "
    "speling_module ssl_module status_module substitute_module unique_id_module userdir_module "
    "usertrack_module version_module vhost_alias_module";

const char* const extensionNames =
    "apache apc apd array bbcode bc bcompiler bz2 calendar classkit classobj com crack ctype curl "
    "cyrus datetime dba dbase dbplus dbx dio dir dom domxml dotnet enchant errorfunc exec exif "
    "expect fam fbsql fdf fileinfo filepro filesystem filter fribidi ftp funchand geoip gettext "
    "gmp gnupg haru hash http hwapi hw i18n interbase ibm-db2 iconv id3 ifx iisfunc gd2 imagick "
    "imap inclued info ingres inotify intl java json kadm5 ldap libxml lzf mail mailparse math "
    "maxdb mbstring mcrypt mcve memcache mhash mime-magic ming misc mnogosearch mongo mqseries "
    "msession msql mssql mysql mysqli ncurses net-gopher network newt nis notes nsapi "
    "objaggregation oci8 oggvorbis openal openssl outcontrol overload ovrimos paradox parsekit "
    "pcntl pcre pdf pdo pgsql phar posix printer ps pspell qtdom radius rar readline recode regex "
    "rpmreader runkit sam sca scream sdo sdodasrel sdo-das-xml sem session session-pgsql shmop "
    "simplexml snmp soap sockets sphinx spl spl-types spplus sqlite3 sqlite ssh2 stats stream "
    "strings svn swf swish sybase_ct tcpwrap tidy tokenizer unicode uodbc url var vpopmail w32api "
    "wddx win32ps win32service xattr xdiff xml xmlreader xmlrpc xmlwriter xsl xslt yaz zip zlib";

std::vector<wxString> Words(const char* text) {
    std::vector<wxString> words;
    wxStringTokenizer tokens(text, " ");
    while (tokens.HasMoreTokens())
        words.push_back(tokens.GetNextToken());
    return words;
}

// Paragraphs are separated by exactly one empty line: every run of line feeds is two long.
bool NewlinesOnlyInPairs(const wxString& text) {
    size_t run = 0;
    for (wxUniChar c : text + " ") {
        if (c == '\n') {
            ++run;
            continue;
        }
        if (run != 0 && run != 2)
            return false;
        run = 0;
    }
    return true;
}

bool PlainAsciiWithoutDoubleBlanks(const wxString& text) {
    for (wxUniChar c : text)
        if (c.GetValue() > 126 || (c < ' ' && c != '\n'))
            return false;
    return !text.Contains("  ");
}

const HelpCatalogue& Catalogue() {
    static const HelpCatalogue catalogue;
    return catalogue;
}

} // namespace

TEST(HelpCatalogue, HoldsEveryNameOnceInCatalogueOrder) {
    EXPECT_EQ(HelpCatalogue::ModuleNames(), Words(moduleNames));
    EXPECT_EQ(HelpCatalogue::ExtensionNames(), Words(extensionNames));
    ASSERT_EQ(HelpCatalogue::ModuleNames().size(), 67u);
    ASSERT_EQ(HelpCatalogue::ExtensionNames().size(), 177u);
    std::set<wxString> all;
    for (const wxString& name : HelpCatalogue::ModuleNames()) {
        EXPECT_TRUE(all.insert(name).second) << name;
        EXPECT_NE(Catalogue().ModuleDescription(name), "No Description Available") << name;
        EXPECT_FALSE(Catalogue().ModuleLink(name).empty()) << name;
    }
    for (const wxString& name : HelpCatalogue::ExtensionNames()) {
        EXPECT_TRUE(all.insert(name).second) << name;
        EXPECT_NE(Catalogue().ExtensionDescription(name), "No Description Available") << name;
        EXPECT_FALSE(Catalogue().ExtensionLink(name).empty()) << name;
    }
}

TEST(HelpCatalogue, ModuleTextsAreASummaryLineThenParagraphs) {
    EXPECT_TRUE(Catalogue()
                    .ModuleDescription("rewrite_module")
                    .StartsWith("Provides a rule-based rewriting engine to rewrite requested URLs "
                                "on the fly\n\nThis module uses a rule-based rewriting engine"));
    for (const wxString& name : HelpCatalogue::ModuleNames()) {
        const wxString text = Catalogue().ModuleDescription(name);
        const wxString summary = text.BeforeFirst('\n');
        const wxString body = text.Mid(summary.length());
        EXPECT_TRUE(body.StartsWith("\n\n")) << name;
        EXPECT_EQ(summary.Strip(wxString::both), summary) << name;
        EXPECT_FALSE(summary.EndsWith(".")) << name;
        EXPECT_EQ(text.Strip(wxString::both), text) << name;
        EXPECT_TRUE(NewlinesOnlyInPairs(text)) << name;
        EXPECT_FALSE(text.Contains(" \n") || text.Contains("\n ")) << name;
        EXPECT_TRUE(PlainAsciiWithoutDoubleBlanks(text)) << name;
        wxStringTokenizer paragraphs(body, "\n", wxTOKEN_STRTOK);
        while (paragraphs.HasMoreTokens()) {
            const wxString paragraph = paragraphs.GetNextToken();
            EXPECT_TRUE(paragraph.EndsWith(".")) << name << " cut short: " << paragraph;
        }
        EXPECT_GE(body.length(), 150u) << name;
        EXPECT_LE(text.length(), 2200u) << name;
    }
}

TEST(HelpCatalogue, ExtensionTextsAreParagraphsFramedByBlanks) {
    EXPECT_EQ(Catalogue().ExtensionDescription("zip"),
              " This extension enables you to transparently read or write ZIP compressed archives "
              "and the files inside them. \n\n ");
    for (const wxString& name : HelpCatalogue::ExtensionNames()) {
        const wxString text = Catalogue().ExtensionDescription(name);
        if (!text.EndsWith(" \n\n ")) {
            ADD_FAILURE() << name << " does not end in a framed paragraph";
            continue;
        }
        EXPECT_TRUE(NewlinesOnlyInPairs(text)) << name;
        wxStringTokenizer paragraphs(text.Left(text.length() - 3), "\n", wxTOKEN_STRTOK);
        while (paragraphs.HasMoreTokens()) {
            const wxString paragraph = paragraphs.GetNextToken();
            EXPECT_TRUE(paragraph.StartsWith(" ") && paragraph.EndsWith(" ")) << name;
            EXPECT_TRUE(paragraph.EndsWith(". ")) << name << " cut short: " << paragraph;
        }
        EXPECT_TRUE(PlainAsciiWithoutDoubleBlanks(text.Mid(1, text.length() - 4))) << name;
        EXPECT_GE(text.length(), 100u) << name;
        EXPECT_LE(text.length(), 2200u) << name;
    }
}

TEST(HelpCatalogue, LinksPointAtTheDocumentationPages) {
    const HelpCatalogue& catalogue = Catalogue();
    EXPECT_EQ(catalogue.ModuleLink("rewrite_module"),
              "http://httpd.apache.org/docs/2.2/mod/mod_rewrite.html");
    EXPECT_EQ(catalogue.ModuleLink("vhost_alias_module"),
              "http://httpd.apache.org/docs/2.2/mod/mod_vhost_alias.html");
    for (const wxString& name : HelpCatalogue::ModuleNames())
        EXPECT_TRUE(
            catalogue.ModuleLink(name).EndsWith("/mod_" + name.Left(name.length() - 7) + ".html"))
            << name;

    const std::pair<const char*, const char*> books[] = {{"curl", "curl"},
                                                         {"bz2", "bzip2"},
                                                         {"interbase", "ibase"},
                                                         {"gd2", "image"},
                                                         {"sybase_ct", "sybase"},
                                                         {"ibm-db2", "ibm-db2"},
                                                         {"mime-magic", "mime-magic"},
                                                         {"net-gopher", "net-gopher"},
                                                         {"sdo-das-xml", "sdo-das-xml"},
                                                         {"session-pgsql", "session-pgsql"},
                                                         {"spl-types", "spl-types"},
                                                         {"sqlite3", "sqlite3"}};
    for (const auto& [name, book] : books)
        EXPECT_EQ(catalogue.ExtensionLink(name),
                  wxString("http://www.php.net/manual/en/book.") + book + ".php");
    for (const wxString& name : HelpCatalogue::ExtensionNames())
        EXPECT_TRUE(catalogue.ExtensionLink(name).StartsWith("http://www.php.net/manual/en/book."))
            << name;
}

TEST(HelpCatalogue, UnknownNamesGetTheFallbacks) {
    const HelpCatalogue& catalogue = Catalogue();
    // Hand-added modules, other kinds, wrong case, stray blanks and the empty name.
    for (const char* name : {"php_module", "", "curl", "Rewrite_module", "rewrite_module "}) {
        EXPECT_EQ(catalogue.ModuleDescription(name), "No Description Available") << name;
        EXPECT_EQ(catalogue.ModuleLink(name), "") << name;
    }
    for (const char* name : {"xdebug", "", "rewrite_module", "CURL", " curl", "php_curl.dll"}) {
        EXPECT_EQ(catalogue.ExtensionDescription(name), "No Description Available") << name;
        EXPECT_EQ(catalogue.ExtensionLink(name), "") << name;
    }
    EXPECT_EQ(catalogue.ModuleDescription("apache"), "No Description Available")
        << "apache is an extension, not a module";
    EXPECT_NE(catalogue.ExtensionDescription("apache"), "No Description Available");
}
