// kovixctl commands over the editable php.ini settings of the current PHP version's template.
#include "cli/CtlCommand.h"
#include "core/FileErrors.h"
#include "core/PhpVersions.h"
#include "core/lang/LangTable.h"
#include "core/php/PHPControlConfig.h"

namespace CtlCommands {

void PhpSettings(CtlContext& context) {
    context.ExpectArgCount(0, 0);
    PhpVersions::SelectFirstIfUnset(context.settings, context.paths);
    const PHPControlConfig table(context.paths);
    if (context.json) {
        nlohmann::json list = nlohmann::json::array();
        for (const auto& [directive, record] : table.GetRecords())
            list.push_back({{"directive", Utf8(directive)},
                            {"label", Utf8(record.label)},
                            {"type", Utf8(record.type)},
                            {"value", Utf8(record.value)}});
        context.PrintJson(list);
        return;
    }
    std::vector<std::vector<wxString>> rows;
    for (const auto& [directive, record] : table.GetRecords())
        rows.push_back({directive, record.label, record.value});
    context.PrintTable(rows);
}

// The record's value choice that text names, ignoring letter case, as the choice spells it.
wxString ChoiceNamed(const PHPSettingRecord& record, const wxString& text) {
    const wxArrayString choices = record.GetValueChoices();
    for (const wxString& choice : choices)
        if (choice.CmpNoCase(text) == 0)
            return choice;
    throw CtlUsageError(Utf8(record.directive + " takes " + wxJoin(choices, '|')));
}

void PhpSet(CtlContext& context) {
    context.ExpectArgCount(2, 2);
    PhpVersions::SelectFirstIfUnset(context.settings, context.paths);
    PHPControlConfig table(context.paths);
    PHPSettingRecord* record = table.Find(context.Arg(0));
    if (!record)
        throw CtlFailure(wxString::Format(GetLangText("CTL_PHP_NOT_EDITABLE"), context.Arg(0)));
    const wxString value = ChoiceNamed(*record, context.Arg(1));
    // The writer only replaces lines the reader recognised; without one it would change nothing.
    if (record->value.empty())
        throw CtlFailure(wxString::Format(GetLangText("CTL_PHP_NO_WORD_LINE"), record->directive,
                                          context.paths.PhpSourceConfig()));
    record->value = value;
    if (!table.WriteValues())
        throw CtlFailure(FileErrors::CannotWrite(table.GetPath()));
}

} // namespace CtlCommands
