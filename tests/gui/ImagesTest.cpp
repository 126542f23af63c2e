#include "gui/Images.h"

#include <gtest/gtest.h>
#include <wx/image.h>

#include <functional>

TEST(ImagesTest, EveryPictureDecodesOnceAtItsSize) {
    const struct {
        std::function<wxBitmap()> get;
        int size;
    } pictures[] = {
        {Images::StatusStopped, 48}, {Images::StatusRunning, 48}, {Images::Logs, 16},
        {Images::Stats, 16},         {Images::EditPhpFile, 16},   {Images::EditApacheFile, 16},
        {Images::StartMenu, 16},     {Images::StopMenu, 16},      {Images::Start, 16},
        {Images::Stop, 16},          {Images::WwwSite, 16},       {Images::WwwFolder, 16},
        {Images::PhpMyAdmin, 16},    {Images::PhpInfo, 16},       {Images::SQLite, 16},
        {Images::Preferences, 16},   {Images::PhpConfig, 16},     {Images::ApacheConfig, 16},
        {Images::Logo, 48},          {Images::Gear, 24},          {Images::Globe, 24}};
    for (size_t i = 0; i < std::size(pictures); ++i) {
        const wxBitmap bitmap = pictures[i].get();
        ASSERT_TRUE(bitmap.IsOk()) << i;
        EXPECT_EQ(bitmap.GetSize(), wxSize(pictures[i].size, pictures[i].size)) << i;
        EXPECT_TRUE(bitmap.ConvertToImage().HasAlpha()) << i;
        EXPECT_TRUE(pictures[i].get().IsSameAs(bitmap)) << i << " is decoded once";
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
