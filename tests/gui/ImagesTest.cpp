#include "gui/Images.h"

#include <gtest/gtest.h>
#include <wx/image.h>

#include <functional>

TEST(ImagesTest, EveryPictureDecodesAtItsSize) {
    const struct {
        const char* name;
        std::function<wxBitmap()> get;
        int size;
    } pictures[] = {
        {"StatusStopped", Images::StatusStopped, 48},
        {"StatusRunning", Images::StatusRunning, 48},
        {"Logs", Images::Logs, 16},
        {"Stats", Images::Stats, 16},
        {"EditPhpFile", Images::EditPhpFile, 16},
        {"EditApacheFile", Images::EditApacheFile, 16},
        {"StartMenu", Images::StartMenu, 16},
        {"StopMenu", Images::StopMenu, 16},
        {"Start", Images::Start, 16},
        {"Stop", Images::Stop, 16},
        {"WwwSite", Images::WwwSite, 16},
        {"WwwFolder", Images::WwwFolder, 16},
        {"PhpMyAdmin", Images::PhpMyAdmin, 16},
        {"PhpInfo", Images::PhpInfo, 16},
        {"SQLite", Images::SQLite, 16},
        {"Preferences", Images::Preferences, 16},
        {"PhpConfig", Images::PhpConfig, 16},
        {"ApacheConfig", Images::ApacheConfig, 16},
        {"Logo", Images::Logo, 48},
        {"Gear", Images::Gear, 24},
        {"Globe", Images::Globe, 24},
    };
    for (const auto& picture : pictures) {
        const wxBitmap bitmap = picture.get();
        ASSERT_TRUE(bitmap.IsOk()) << picture.name;
        EXPECT_EQ(bitmap.GetSize(), wxSize(picture.size, picture.size)) << picture.name;
        EXPECT_TRUE(bitmap.ConvertToImage().HasAlpha()) << picture.name;
        EXPECT_TRUE(picture.get().IsSameAs(bitmap)) << picture.name << " is decoded once";
    }
}

TEST(ImagesTest, StatusPicturesTellStoppedFromRunning) {
    // A point of the badge at the bottom right, above its white mark.
    const wxImage stopped = Images::StatusStopped().ConvertToImage();
    const wxImage running = Images::StatusRunning().ConvertToImage();
    EXPECT_GT(stopped.GetRed(35, 28), 2 * stopped.GetGreen(35, 28));
    EXPECT_GT(running.GetGreen(35, 28), 2 * running.GetRed(35, 28));
}

TEST(ImagesTest, ProgramIconsAndRejectedData) {
    const wxIconBundle icons = Images::ProgramIcons();
    EXPECT_EQ(icons.GetIconCount(), 5u);
    for (int size : {16, 24, 32, 48, 64})
        EXPECT_EQ(icons.GetIconOfExactSize(size).GetWidth(), size);
    EXPECT_EQ(Images::TrayIcon().GetSize(), wxSize(32, 32));

    const unsigned char notPng[] = "GIF89a not a picture";
    EXPECT_FALSE(LoadEmbeddedBitmap(notPng, sizeof notPng).IsOk());
    EXPECT_FALSE(LoadEmbeddedBitmap(notPng, 0).IsOk());
}
