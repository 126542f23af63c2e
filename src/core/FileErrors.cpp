#include "core/FileErrors.h"

#include "core/lang/LangTable.h"
#include "platform/Platform.h"

namespace FileErrors {

namespace {

wxString Message(const char* key, const wxString& path) {
    const wxString reason = Platform::LastFailureReason();
    return wxString::Format(GetLangText(key), path, reason);
}

} // namespace

wxString CannotRead(const wxString& path) {
    return Message("FILE_CANNOT_READ", path);
}

wxString CannotWrite(const wxString& path) {
    return Message("FILE_CANNOT_WRITE", path);
}

wxString CannotRemove(const wxString& path) {
    return Message("FILE_CANNOT_REMOVE", path);
}

} // namespace FileErrors
