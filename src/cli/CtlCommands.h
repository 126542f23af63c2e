#pragma once

#include "cli/CtlCommand.h"

// The handlers of kovixctl's commands, grouped by the file that defines them. CtlCommandTable.cpp
// gives each one its words and usage.
namespace CtlCommands {

// CtlServerCommands.cpp
void Status(CtlContext& context);
void Start(CtlContext& context);
void Stop(CtlContext& context);
void Clean(CtlContext& context);
void Restore(CtlContext& context);

// CtlSettingsCommands.cpp
void Port(CtlContext& context);
void Mode(CtlContext& context);
void Lang(CtlContext& context);
void Text(CtlContext& context);
void Url(CtlContext& context);

// CtlConfigCommands.cpp
void Generate(CtlContext& context);
void PhpVersionList(CtlContext& context);
void PhpUse(CtlContext& context);
void PhpExtensionList(CtlContext& context);
void PhpExtEnable(CtlContext& context);
void PhpExtDisable(CtlContext& context);
void ApacheModuleList(CtlContext& context);
void ApacheModuleEnable(CtlContext& context);
void ApacheModuleDisable(CtlContext& context);

// CtlPhpSettingsCommands.cpp
void PhpSettings(CtlContext& context);
void PhpSet(CtlContext& context);

// CtlApacheCommands.cpp
void VirtualHosts(CtlContext& context);
void ImportVirtualHosts(CtlContext& context);
void CatalogueModule(CtlContext& context);
void CatalogueExtension(CtlContext& context);

// CtlSitesCommands.cpp
void Sites(CtlContext& context);
void Https(CtlContext& context);

// CtlToolCommands.cpp
void Logs(CtlContext& context);
void DbList(CtlContext& context);
void DbBackup(CtlContext& context);
void DbRestore(CtlContext& context);
void MailCatch(CtlContext& context);
void MailList(CtlContext& context);
void MailShow(CtlContext& context);
void MailClear(CtlContext& context);

} // namespace CtlCommands
