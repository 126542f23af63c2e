#include "core/servers/PortCheck.h"

#include "core/AppSettings.h"
#include "core/lang/LangTable.h"
#include "platform/Platform.h"

namespace PortCheck {

wxString PortRefusal(int port) {
    if (Platform::Get().MayListenOn(port))
        return wxString();
    return wxString::Format(GetLangText("PORT_PRIVILEGED"), port);
}

bool IsPortFree(int port) {
    const int oneSecond = 1000;
    return !Platform::Get().IsLocalPortTaken(port, oneSecond);
}

wxString PortTakenMessage(const AppSettings& settings) {
    return GetLangText("PORT_MESSAGE1") + settings.GetPortText() + GetLangText("PORT_MESSAGE2");
}

wxString PortHolderLine(int port) {
    wxString holder = Platform::Get().DescribePortHolder(port);
    if (holder.empty())
        holder = GetLangText("PORT_HOLDER_UNKNOWN");
    return wxString::Format(GetLangText("PORT_HOLDER"), port, holder);
}

} // namespace PortCheck
