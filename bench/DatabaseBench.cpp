// Backup and restore of a database of about 100 MB through kovixctl's database code against the
// same work done by hand with the client programs in a shell pipe, both on the same server of a
// temporary tree, in one run; then the restore over the existing database, which backs it up
// first:
//
//   DatabaseBench [ROWS]    (100,000 rows of 1 KB by default)
#include "core/AppSettings.h"
#include "core/InstallPaths.h"
#include "core/db/DatabaseTool.h"
#include "support/CommandRunner.h"
#include "support/TestTree.h"

#include <wx/filename.h>
#include <wx/init.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <stdexcept>

namespace {

using Clock = std::chrono::steady_clock;

double Seconds(const std::function<void()>& work) {
    const auto start = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void Check(const CommandResult& result, const char* what) {
    if (result.exitCode != 0)
        throw std::runtime_error(std::string(what) + ": " + result.err.utf8_string());
}

} // namespace

int main(int argc, char** argv) {
    wxInitializer initializer(argc, argv);
    const long rows = argc > 1 ? std::atol(argv[1]) : 100000;
    try {
        TestTree tree(KOVIX_SOURCE_DIR);
        Check(tree.Ctl(KOVIXCTL_PATH, {"start", "mysql"}), "start");
        const wxString client =
            "mariadb --defaults-file=\"" + tree.File("mysql/my.ini") + "\" --user=root";
        // Rows of 1 KB of hex digests: quick to make, and they compress about as text does.
        const double made = Seconds([&] {
            Check(RunShell(client + wxString::Format(
                                        " -e \"SET max_recursive_iterations = %ld; "
                                        "CREATE DATABASE bench; CREATE TABLE bench.t (id INT "
                                        "PRIMARY KEY, body TEXT) ENGINE=InnoDB; "
                                        "INSERT INTO bench.t WITH RECURSIVE n(i) AS (SELECT 1 "
                                        "UNION ALL SELECT i + 1 FROM n WHERE i < %ld) SELECT i, "
                                        "CONCAT(SHA2(i, 512), SHA2(i + 1, 512), SHA2(i + 2, 512), "
                                        "SHA2(i + 3, 512), SHA2(i + 4, 512), SHA2(i + 5, 512), "
                                        "SHA2(i + 6, 512), SHA2(i + 7, 512)) FROM n; "
                                        "ANALYZE TABLE bench.t\"",
                                        rows, rows)),
                  "data");
        });
        AppSettings settings;
        settings.Load(tree.File("kovix.ini"));
        const InstallPaths paths(tree.Root(), settings);
        const DatabaseTool tool(paths);
        std::vector<DatabaseInfo> databases;
        DatabaseError error;
        tool.List(databases, error);
        const long long bytes = databases.empty() ? 0 : databases[0].bytes;
        std::printf("database: %ld rows, %.1f MB on disk, made in %.1f s\n", rows,
                    static_cast<double>(bytes) / 1048576, made);

        wxString file;
        const double ours = Seconds([&] {
            if (!tool.Backup("bench", bytes, file, error))
                throw std::runtime_error(DatabaseErrorText(error).utf8_string());
        });
        const wxString byHandFile = tree.File("by-hand.sql.gz");
        const wxString dump = "mariadb-dump --defaults-file=\"" + tree.File("mysql/my.ini") +
                              "\" --user=root --single-transaction --routines --events "
                              "--triggers --hex-blob bench";
        const double byHand =
            Seconds([&] { Check(RunShell(dump + " | gzip -1 > \"" + byHandFile + "\""), "dump"); });
        const double plain = Seconds(
            [&] { Check(RunShell(dump + " > \"" + tree.File("by-hand.sql") + "\""), "dump"); });
        std::printf("backup  kovix %6.2f s   by hand | gzip -1 %6.2f s  (%.2fx)   by hand, "
                    "uncompressed %6.2f s\n",
                    ours, byHand, ours / byHand, plain);
        std::printf("        file %.1f MB (by hand %.1f MB)\n",
                    static_cast<double>(wxFileName::GetSize(file).ToDouble()) / 1048576,
                    static_cast<double>(wxFileName::GetSize(byHandFile).ToDouble()) / 1048576);

        // Into a new database, as by hand; over the existing one it backs that up first.
        wxString safety;
        const auto restore = [&](const wxString& into) {
            return Seconds([&] {
                if (!tool.Restore(file, into, safety, error))
                    throw std::runtime_error(DatabaseErrorText(error).utf8_string());
            });
        };
        const double restored = restore("bench new");
        const double restoredOver = restore("bench");
        const double restoredByHand = Seconds([&] {
            Check(RunShell(client +
                           " -e \"DROP DATABASE bench; CREATE DATABASE bench\" && "
                           "gunzip -c \"" +
                           byHandFile + "\" | " + client + " bench"),
                  "restore");
        });
        std::printf("restore kovix %6.2f s   by hand gunzip | mariadb %6.2f s  (%.2fx)\n", restored,
                    restoredByHand, restored / restoredByHand);
        std::printf("        over the existing database, safety backup first: %6.2f s\n",
                    restoredOver);
        tree.Ctl(KOVIXCTL_PATH, {"stop", "mysql"});
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "DatabaseBench: %s\n", failure.what());
        return 1;
    }
    return 0;
}
