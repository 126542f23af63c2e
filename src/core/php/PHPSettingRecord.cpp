#include "core/php/PHPSettingRecord.h"

wxArrayString PHPSettingRecord::GetValueChoices() const {
    wxArrayString choices;
    if (type == "bool") {
        choices.Add("On");
        choices.Add("Off");
    }
    return choices;
}

bool PHPSettingRecord::ValueEquals(const wxString& text) const {
    return text.Lower() == value.Lower();
}
