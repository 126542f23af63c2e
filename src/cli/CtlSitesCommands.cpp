// kovixctl commands of the sites made from www/ and of local HTTPS: sites, https.
#include "cli/CtlCommands.h"
#include "core/lang/LangTable.h"
#include "core/sites/LocalCertificate.h"
#include "core/sites/SiteConfig.h"

namespace CtlCommands {

// Skipped folders are said on standard error, so that the JSON listing stays one document.
void Sites(CtlContext& context) {
    context.ExpectArgCount(0, 0);
    const SiteList list = SiteConfig(context.paths).Sites();
    const bool https = context.settings.GetHttpsEnabled();
    auto httpsUrl = [&](const Site& site) {
        return https ? context.paths.SiteUrl(site.name, true) : wxString();
    };
    if (context.json) {
        nlohmann::ordered_json document = nlohmann::ordered_json::array();
        for (const Site& site : list.sites)
            document.push_back({{"name", Utf8(site.name)},
                                {"folder", Utf8(site.folder)},
                                {"http", Utf8(context.paths.SiteUrl(site.name, false))},
                                {"https", Utf8(httpsUrl(site))}});
        context.Print(FromUtf8(document.dump()));
    } else {
        std::vector<std::vector<wxString>> rows;
        for (const Site& site : list.sites)
            rows.push_back(
                {site.name, context.paths.SiteUrl(site.name, false), httpsUrl(site), site.folder});
        context.PrintTable(rows);
    }
    for (const SkippedFolder& skipped : list.skipped)
        context.PrintError(skipped.Message());
}

void Https(CtlContext& context) {
    context.ExpectArgCount(0, 1);
    if (context.args.empty()) {
        context.Print(context.settings.GetHttpsEnabled() ? "on" : "off");
        return;
    }
    if (context.Arg(0) == "trust") {
        const LocalCertificate certificate(context.paths);
        const wxString problem = certificate.TrustForBrowsers();
        if (!problem.empty())
            throw CtlFailure(wxString::Format(GetLangText("HTTPS_NOT_TRUSTED"), problem));
        context.Print(
            wxString::Format(GetLangText("HTTPS_TRUSTED"), certificate.SystemTrustCommand()));
        return;
    }
    if (context.Arg(0) != "on" && context.Arg(0) != "off")
        throw CtlUsageError("https [on|off] | https trust");
    context.settings.SetBool(AppSettings::HTTPS_ENABLED, context.Arg(0) == "on");
    context.SettingsChanged();
}

} // namespace CtlCommands
