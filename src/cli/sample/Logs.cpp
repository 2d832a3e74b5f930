#include "cli/sample/SampleParts.h"
#include "cli/sample/SampleWriter.h"

#include <string>

namespace sweeply::sample {

namespace {

struct Log {
    std::string_view path;
    std::size_t size; ///< bytes
};

constexpr Log kUserLogs[] = {
    // To either side of the size from which a log is worth mentioning.
    {"Barely too small.log", 10239},
    {"Barely large enough.log", 10240},
    {"DiskUtility.log", 48000},
    {"Ledger.log", 150000},
    {"fsck_hfs.log", 900},
    {"Harbor Mail/connection.log", 64000},
    {"Harbor Mail/Archive/connection.log.1", 32000},
    {"CrashReporter/Ledger_2011-05-30-101122_sams-macbook.crash", 22000},
    {"CrashReporter/Raft_2011-06-01-220301_sams-macbook.crash", 18000},
    {"CrashReporter/.Ledger_sams-macbook_CrashHistory.plist", 400},
    {"HangReporter/Safari/2011-06-02-090001-Safari.hang", 26000},
    {".DS_Store", 12292},
};

constexpr Log kSystemLogs[] = {
    {"/Library/Logs/Software Update.log", 30000},
    {"/Library/Logs/com.northbay.ledger.log", 12000},
    {"/Library/Logs/CrashReporter/Finder_2011-06-11-080000_sams-macbook.crash", 20000},
    {"/Library/Logs/DiagnosticReports/Finder.crash", 5000},
    {"/Library/Logs/Console/501/console.log", 11000},
    {"/private/var/log/system.log", 400000},
    {"/private/var/log/system.log.0.bz2", 40000},
    {"/private/var/log/secure.log", 60000},
    {"/private/var/log/install.log", 90000},
    {"/private/var/log/kernel.log", 25000},
    {"/private/var/log/asl/2011.06.23.U501.asl", 15000},
    {"/private/var/log/cups/access_log", 3000},
};

/// Logs of one program that writes a new one each time.
constexpr unsigned kSessions = 10;

} // namespace

void writeLogs(SampleWriter& out) {
    const std::string user = std::string(kHome) + "/Library/Logs/";
    for (const auto& [path, size] : kUserLogs)
        out.log(user + std::string(path), size);
    for (const auto& [path, size] : kSystemLogs)
        out.log(std::string(path), size);
    for (unsigned i = 1; i <= kSessions * out.scale(); ++i)
        out.log(user + "Paper Trail session " + std::to_string(i) + ".log", 8000 + 500 * (i % kSessions));
}

} // namespace sweeply::sample
