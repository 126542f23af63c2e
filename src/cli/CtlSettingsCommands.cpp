// kovixctl commands that only read or change settings: port, mode, lang, text, url.
#include "cli/CtlCommand.h"
#include "core/lang/LangTable.h"

namespace CtlCommands {

void Port(CtlContext& context) {
    context.ExpectArgCount(0, 1);
    if (context.args.empty()) {
        context.Print(wxString::Format("%d", context.settings.GetPort()));
        return;
    }
    const long lowest = 1, highest = 65535;
    long port = 0;
    if (!ParseDecimal(context.Arg(0), port) || port < lowest || port > highest)
        throw CtlUsageError("the port must be a decimal integer from 1 to 65535");
    context.settings.SetPortText(context.Arg(0));
    context.SettingsChanged();
}

void Mode(CtlContext& context) {
    context.ExpectArgCount(0, 1);
    if (context.args.empty()) {
        context.Print(context.settings.IsOnline() ? "online" : "offline");
        return;
    }
    if (context.Arg(0) != "online" && context.Arg(0) != "offline")
        throw CtlUsageError("the mode is online or offline");
    context.settings.SetOnline(context.Arg(0) == "online");
    context.SettingsChanged();
}

void Lang(CtlContext& context) {
    context.ExpectArgCount(0, 1);
    if (context.args.empty()) {
        context.Print(GetCurrentLangCode());
        return;
    }
    const wxString& code = context.Arg(0);
    if (code != "en" && code != "fr")
        throw CtlUsageError("the language is en or fr");
    context.settings.SetLanguage(SetLangIndex(code == "en" ? 0 : 1));
    context.SettingsChanged();
}

void Text(CtlContext& context) {
    context.ExpectArgCount(1, 1);
    context.Print(GetLangText(context.Arg(0)));
}

void Url(CtlContext& context) {
    context.ExpectArgCount(1, 1);
    const wxString& which = context.Arg(0);
    if (which == "site")
        context.Print(context.paths.LocalSiteUrl());
    else if (which == "phpmyadmin")
        context.Print(context.paths.PhpMyAdminUrl());
    else if (which == "phpinfo")
        context.Print(context.paths.PhpInfoUrl());
    else
        throw CtlUsageError("url site|phpmyadmin|phpinfo");
}

} // namespace CtlCommands
