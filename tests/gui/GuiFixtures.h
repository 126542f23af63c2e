#pragma once

// Fixtures of the window tests: the main window on a tree, and a real tree for the configuration
// dialogs. English texts; the servers are not started on launch.

#include "core/AppSettings.h"
#include "core/InstallPaths.h"
#include "core/lang/LangTable.h"
#include "core/net/HostNameLookupThread.h"
#include "gui/GuiTesting.h"
#include "gui/WinKovix.h"
#include "support/LocalHttpServer.h"
#include "support/ScopedEnv.h"
#include "support/SmallTree.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>
#include <wx/weakref.h>

#include <type_traits>

// A copy of the assembled tree with the real servers.
struct RealTree : TestTree {
    RealTree() : TestTree(KOVIX_SOURCE_DIR) {}
};

// Tree: SmallTree (no real server; Apache gets a free port) or RealTree.
template <class Tree> class MainWindowTest : public testing::Test {
protected:
    MainWindowTest() {
        if constexpr (std::is_same_v<Tree, RealTree>)
            settings.Load(tree.File("kovix.ini"));
        else
            settings.SetPort(TestTree::FreePort());
        settings.SetBool(AppSettings::START_ON_START, false);
        InitLangTable(settings, "en");
    }
    void TearDown() override { Close(); }

    WinKovix& Open() {
        window = new WinKovix(tree.Root(), settings);
        return *window;
    }
    // Opens the window with its network lookups pointed at these two services.
    WinKovix& Open(const LocalHttpServer& ipService, const LocalHttpServer& productSite) {
        ScopedEnv ip(HostNameLookupThread::IP_SERVICE_VARIABLE, ipService.HostAndPort());
        ScopedEnv site(HostNameLookupThread::PRODUCT_SITE_VARIABLE, productSite.HostAndPort());
        return Open();
    }
    void Close() {
        if (window)
            CloseWindow(window.get());
    }
    wxString Label(int id) { return ::Label(window.get(), id); }
    bool IsEnabled(int id) { return ::IsEnabled(window.get(), id); }
    bool WaitForStates(const wxString& apache, const wxString& mysql, int timeoutMs = 5000) {
        return WaitFor(
            [&] {
                return Label(WinKovix::ID_STATUS_APACHE).StartsWith(apache) &&
                       Label(WinKovix::ID_STATUS_MYSQL).StartsWith(mysql);
            },
            timeoutMs);
    }

    Tree tree;
    AppSettings settings;
    wxWeakRef<WinKovix> window;
};

// Dialog: the configuration dialog under test.
template <class Dialog> class ConfigDialogTest : public testing::Test {
protected:
    ConfigDialogTest() {
        settings.Load(tree.File("kovix.ini"));
        InitLangTable(settings, "en");
    }

    // Shows the dialog modally, runs steps in it once its template is loaded, and returns how it
    // ended; steps must end it.
    int RunDialog(const std::function<void(Dialog&)>& steps) {
        Dialog dialog(nullptr, paths);
        WhenModal([&] {
            EXPECT_TRUE(WaitFor([&] { return !dialog.IsBusy(); }));
            steps(dialog);
        });
        return dialog.ShowModal();
    }

    RealTree tree;
    AppSettings settings;
    InstallPaths paths{tree.Root(), settings};
};
