#include "core/InstallPaths.h"
#include "core/AppSettings.h"

#include <gtest/gtest.h>

TEST(InstallPaths, FollowThePhpVersionAndThePortAsStored) {
    AppSettings settings;
    InstallPaths paths("/opt/my stack", settings);
    EXPECT_EQ(paths.PhpSourceConfig(), "/opt/my stack/apache//php_source.ini") << "no version";
    settings.SetPhpVersion("php_8.2");
    settings.SetPortText("8080");
    EXPECT_EQ(paths.PhpExtensionFolder(), "/opt/my stack/apache/php_8.2/ext");
    EXPECT_EQ(paths.PhpLiveConfig() + paths.SessionsFolder(),
              "/opt/my stack/apache/php.ini/opt/my stack/apache/sessions/");
    EXPECT_EQ(paths.PhpMyAdminUrl(), "http://localhost:8080/mysql/");
    for (const char* eighty : {"80", "", "http"}) {
        settings.SetPortText(eighty);
        EXPECT_EQ(paths.PhpInfoUrl(), "http://localhost/kovix/phpinfo.php") << eighty;
    }
}
