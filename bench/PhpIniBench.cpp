// Times reading and writing the editable settings of a 100,000-line php.ini against PHP's own
// parse of the same file (php -n -c FILE), and prints both with their ratio.
#include "core/TextFiles.h"
#include "core/php/PHPControlConfig.h"

#include <wx/filefn.h>
#include <wx/filename.h>
#include <wx/init.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

namespace {

const int lineCount = 100000;
const int runs = 9;

// The best of the runs: other work on the machine only ever adds time.
double BestMilliseconds(const std::function<void()>& job) {
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        const auto start = std::chrono::steady_clock::now();
        job();
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - start;
        times.push_back(took.count());
    }
    return *std::min_element(times.begin(), times.end());
}

// The lines of source repeated until there are lineCount of them.
wxString Repeated(const wxString& source) {
    wxString text;
    int lines = 0;
    while (lines < lineCount)
        for (size_t start = 0; start < source.length() && lines < lineCount; ++lines) {
            const size_t end = std::min(source.find('\n', start), source.length());
            text << source.substr(start, end - start) << "\n";
            start = end + 1;
        }
    return text;
}

void RunPhp(const wxString& iniFile) {
    const wxString command =
        "php -n -c '" + iniFile + "' -r 'ini_get(\"short_open_tag\");' >/dev/null 2>&1";
    if (std::system(command.utf8_str()) != 0) {
        std::fprintf(stderr, "php failed on %s\n", static_cast<const char*>(iniFile.utf8_str()));
        std::exit(1);
    }
}

} // namespace

int main(int argc, char** argv) {
    wxInitializer initializer(argc, argv);
    TextFiles::InitEncoding();
    const wxString sourcePath =
        argc > 1 ? wxString(argv[1]) : wxString("/usr/lib/php/8.2/php.ini-development");
    wxString source;
    if (!TextFiles::Read(sourcePath, source)) {
        std::fprintf(stderr, "cannot read %s\n", static_cast<const char*>(sourcePath.utf8_str()));
        return 1;
    }
    const wxString folder = wxFileName::CreateTempFileName("phpini-bench");
    wxRemoveFile(folder);
    wxMkdir(folder);
    const wxString iniFile = folder + "/php_source.ini";
    const wxString emptyIni = folder + "/empty.ini";
    TextFiles::WriteAtomically(iniFile, Repeated(source));
    TextFiles::WriteAtomically(emptyIni, "");

    const double decode = BestMilliseconds([&] {
        wxString text;
        TextFiles::Read(iniFile, text);
    });
    const double read = BestMilliseconds([&] { PHPControlConfig table(iniFile); });
    PHPControlConfig table(iniFile);
    PHPSettingRecord& record = *table.Find("short_open_tag");
    const double write = BestMilliseconds([&] {
        record.value = record.ValueEquals("On") ? "Off" : "On";
        table.WriteValues();
    });
    const double php = BestMilliseconds([&] { RunPhp(iniFile); });
    const double phpStart = BestMilliseconds([&] { RunPhp(emptyIni); });

    std::printf("php.ini of %d lines, %zu bytes (%s repeated); best of %d runs\n", lineCount,
                static_cast<size_t>(wxFileName::GetSize(iniFile).GetValue()),
                static_cast<const char*>(sourcePath.utf8_str()), runs);
    std::printf("kovix read  %8.2f ms (%.2f ms of it reading and decoding the file)\n", read,
                decode);
    std::printf("kovix write %8.2f ms\n", write);
    std::printf("php -n -c   %8.2f ms (%.2f ms with an empty ini: %.2f ms parsing)\n", php,
                phpStart, php - phpStart);
    std::printf("ratio kovix read / php %.2f, kovix write / php %.2f\n", read / php, write / php);
    std::printf("ratio kovix read / php's parsing %.2f\n", read / (php - phpStart));
    wxRemoveFile(iniFile);
    wxRemoveFile(emptyIni);
    wxRmdir(folder);
    return 0;
}
