// Every kovixctl command in one table: its words, its usage line, its handler and whether it may
// change the tree. A new command is one row here and its handler in a Ctl*Commands.cpp file.
#include "cli/CtlCommands.h"

using namespace CtlCommands;

const std::vector<CtlCommandSpec>& CtlCommandTable() {
    const CtlAccess reads = CtlAccess::Reads, changes = CtlAccess::Changes;
    static const std::vector<CtlCommandSpec> table{
        {{"status"}, "[--json]", Status, reads},
        {{"start"}, "[all|apache|mysql]", Start, changes},
        {{"stop"}, "[all|apache|mysql]", Stop, changes},
        {{"clean"}, "apache-logs|mysql-logs|sessions|all", Clean, changes},
        {{"restore"}, "apache|php", Restore, changes},

        {{"port"}, "[N]", Port, changes},
        {{"mode"}, "[online|offline]", Mode, changes},
        {{"lang"}, "[en|fr]", Lang, changes},
        {{"text"}, "KEY", Text, reads},
        {{"url"}, "site|phpmyadmin|phpinfo", Url, reads},
        {{"sites"}, "[--json]", Sites, reads},
        {{"https"}, "[on|off] | https trust", Https, changes},

        {{"generate"}, "", Generate, changes},
        {{"php", "versions"}, "[--json]", PhpVersionList, reads},
        {{"php", "use"}, "VERSION", PhpUse, changes},
        {{"php", "ext"}, "[--json]", PhpExtensionList, reads},
        {{"php", "ext", "enable"}, "NAME...", PhpExtEnable, changes},
        {{"php", "ext", "disable"}, "NAME...", PhpExtDisable, changes},
        {{"php", "settings"}, "[--json]", PhpSettings, reads},
        {{"php", "set"}, "DIRECTIVE On|Off", PhpSet, changes},
        {{"apache", "modules"}, "[--json]", ApacheModuleList, reads},
        {{"apache", "module", "enable"}, "KEY...", ApacheModuleEnable, changes},
        {{"apache", "module", "disable"}, "KEY...", ApacheModuleDisable, changes},
        {{"apache", "vhosts"}, "[--json]", VirtualHosts, reads},
        {{"apache", "vhosts", "import"}, "FILE|-", ImportVirtualHosts, changes},

        {{"catalogue", "module"}, "NAME [--json]", CatalogueModule, reads},
        {{"catalogue", "extension"}, "NAME [--json]", CatalogueExtension, reads},

        {{"logs"}, "apache-error|apache-access|php|mysql [--lines N] [--follow]", Logs, reads},
        {{"db", "list"}, "[--json]", DbList, reads},
        {{"db", "backup"}, "[NAME...]", DbBackup, changes},
        {{"db", "restore"}, "FILE [--into NAME]", DbRestore, changes},
        // PHP runs it while the panel holds the tree; it only adds a file to the mail folder.
        {{"mail", "catch"}, "(the message on standard input)", MailCatch, reads},
        {{"mail", "list"}, "[--json]", MailList, reads},
        {{"mail", "show"}, "ID", MailShow, reads},
        {{"mail", "clear"}, "", MailClear, changes},
    };
    return table;
}
