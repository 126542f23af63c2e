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
