#include "gui/Images.h"

#include <wx/image.h>
#include <wx/log.h>
#include <wx/module.h>
#include <wx/mstream.h>

#include <map>

#define KOVIX_EMBEDDED_PNG(stem)                                                                   \
    extern const unsigned char stem##_png[];                                                       \
    extern const std::size_t stem##_png_size;

KOVIX_EMBEDDED_PNG(status_stopped)
KOVIX_EMBEDDED_PNG(status_running)
KOVIX_EMBEDDED_PNG(btn_logs)
KOVIX_EMBEDDED_PNG(btn_stats)
KOVIX_EMBEDDED_PNG(btn_edit_php)
KOVIX_EMBEDDED_PNG(btn_edit_apache)
KOVIX_EMBEDDED_PNG(btn_start_menu)
KOVIX_EMBEDDED_PNG(btn_stop_menu)
KOVIX_EMBEDDED_PNG(start)
KOVIX_EMBEDDED_PNG(stop)
KOVIX_EMBEDDED_PNG(www_site)
KOVIX_EMBEDDED_PNG(www_folder)
KOVIX_EMBEDDED_PNG(phpmyadmin)
KOVIX_EMBEDDED_PNG(phpinfo)
KOVIX_EMBEDDED_PNG(sqlite)
KOVIX_EMBEDDED_PNG(preferences)
KOVIX_EMBEDDED_PNG(php_config)
KOVIX_EMBEDDED_PNG(apache_config)
KOVIX_EMBEDDED_PNG(logo)
KOVIX_EMBEDDED_PNG(gear)
KOVIX_EMBEDDED_PNG(globe)
KOVIX_EMBEDDED_PNG(icon_16)
KOVIX_EMBEDDED_PNG(icon_24)
KOVIX_EMBEDDED_PNG(icon_32)
KOVIX_EMBEDDED_PNG(icon_48)
KOVIX_EMBEDDED_PNG(icon_64)

namespace {

// Holds every decoded picture until the toolkit shuts down; a module, so that the bitmaps are
// released while the toolkit still exists rather than by static destruction after it.
class ImageCache : public wxModule {
public:
    bool OnInit() override { return true; }
    void OnExit() override { Bitmaps().clear(); }

    static std::map<const unsigned char*, wxBitmap>& Bitmaps() {
        static std::map<const unsigned char*, wxBitmap> bitmaps;
        return bitmaps;
    }

private:
    wxDECLARE_DYNAMIC_CLASS(ImageCache);
};

wxIMPLEMENT_DYNAMIC_CLASS(ImageCache, wxModule);

wxBitmap Cached(const unsigned char* data, std::size_t size) {
    wxBitmap& bitmap = ImageCache::Bitmaps()[data];
    if (!bitmap.IsOk())
        bitmap = LoadEmbeddedBitmap(data, size);
    return bitmap;
}

wxIcon IconOf(const wxBitmap& bitmap) {
    wxIcon icon;
    icon.CopyFromBitmap(bitmap);
    return icon;
}

} // namespace

wxBitmap LoadEmbeddedBitmap(const unsigned char* data, std::size_t size) {
    wxMemoryInputStream stream(data, size);
    wxImage image;
    // A bad picture is reported by the invalid result, not by a message box.
    wxLogNull quiet;
    if (!image.LoadFile(stream, wxBITMAP_TYPE_PNG))
        return wxBitmap();
    return wxBitmap(image);
}

#define KOVIX_IMAGE(name, stem)                                                                    \
    wxBitmap Images::name() {                                                                      \
        return Cached(stem##_png, stem##_png_size);                                                \
    }

KOVIX_IMAGE(StatusStopped, status_stopped)
KOVIX_IMAGE(StatusRunning, status_running)
KOVIX_IMAGE(Logs, btn_logs)
KOVIX_IMAGE(Stats, btn_stats)
KOVIX_IMAGE(EditPhpFile, btn_edit_php)
KOVIX_IMAGE(EditApacheFile, btn_edit_apache)
KOVIX_IMAGE(StartMenu, btn_start_menu)
KOVIX_IMAGE(StopMenu, btn_stop_menu)
KOVIX_IMAGE(Start, start)
KOVIX_IMAGE(Stop, stop)
KOVIX_IMAGE(WwwSite, www_site)
KOVIX_IMAGE(WwwFolder, www_folder)
KOVIX_IMAGE(PhpMyAdmin, phpmyadmin)
KOVIX_IMAGE(PhpInfo, phpinfo)
KOVIX_IMAGE(SQLite, sqlite)
KOVIX_IMAGE(Preferences, preferences)
KOVIX_IMAGE(PhpConfig, php_config)
KOVIX_IMAGE(ApacheConfig, apache_config)
KOVIX_IMAGE(Logo, logo)
KOVIX_IMAGE(Gear, gear)
KOVIX_IMAGE(Globe, globe)

wxIconBundle Images::ProgramIcons() {
    wxIconBundle bundle;

    bundle.AddIcon(IconOf(Cached(icon_16_png, icon_16_png_size)));
    bundle.AddIcon(IconOf(Cached(icon_24_png, icon_24_png_size)));
    bundle.AddIcon(IconOf(Cached(icon_32_png, icon_32_png_size)));
    bundle.AddIcon(IconOf(Cached(icon_48_png, icon_48_png_size)));
    bundle.AddIcon(IconOf(Cached(icon_64_png, icon_64_png_size)));
    return bundle;
}

wxIcon Images::TrayIcon() {
    return IconOf(Cached(icon_32_png, icon_32_png_size));
}
