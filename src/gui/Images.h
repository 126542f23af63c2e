#pragma once

#include <wx/bitmap.h>
#include <wx/icon.h>
#include <wx/iconbndl.h>

#include <cstddef>

// Decodes a PNG held in memory (the res/*.png files are compiled into the program). Needs the PNG
// handler registered; returns an invalid bitmap when the data is not a PNG.
wxBitmap LoadEmbeddedBitmap(const unsigned char* data, std::size_t size);

// The pictures of the windows, each decoded once and then shared (bitmaps are reference counted,
// so returning them by value is cheap and calling an accessor on every status tick costs nothing).
// Sizes in pixels are given per group; res/ holds the PNGs, scripts/make-images.sh draws them.
namespace Images {

// Status picture, 48 x 48: both servers stopped, or at least one server runs.
wxBitmap StatusStopped();
wxBitmap StatusRunning();

// Bitmap buttons, 16 x 16.
wxBitmap Logs();           // WxButtonToolsPlus: the logs menu
wxBitmap Stats();          // btn_Stat: the statistics window
wxBitmap EditPhpFile();    // btn_ConfigPHPFile: edit php_source.ini
wxBitmap EditApacheFile(); // btn_ConfigApacheFile: edit httpd_source.conf
wxBitmap StartMenu();      // btn_StartSolo: start one server
wxBitmap StopMenu();       // btn_StopSolo: stop one server

// Optional 16 x 16 pictures for the text buttons (wxButton::SetBitmap) and menus.
wxBitmap Start();
wxBitmap Stop();
wxBitmap WwwSite();
wxBitmap WwwFolder();
wxBitmap PhpMyAdmin();
wxBitmap PhpInfo();
wxBitmap SQLite();
wxBitmap Preferences();
wxBitmap PhpConfig();
wxBitmap ApacheConfig();

// Decorative pictures: the program logo 48 x 48, a gear and a globe 24 x 24.
wxBitmap Logo();
wxBitmap Gear();
wxBitmap Globe();

// The program icon: 16, 24, 32, 48 and 64 pixels for the frame, one icon for the tray.
wxIconBundle ProgramIcons();
wxIcon TrayIcon();

} // namespace Images
