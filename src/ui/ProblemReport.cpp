#include "ui/ProblemReport.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <execinfo.h>
#include <filesystem>
#include <fstream>
#include <utility>

namespace sweeply {

namespace {

constexpr int kDeepest = 64;

// A terminate handler takes no arguments.
std::string g_folder;
std::string g_version;

std::string whatIsThrown() {
    try {
        if (const auto thrown = std::current_exception())
            std::rethrow_exception(thrown);
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (...) {
        return "something that is no exception";
    }
    return "no exception";
}

[[noreturn]] void writeReport() {
    std::error_code ignored;
    std::filesystem::create_directories(g_folder, ignored);
    const std::string path = g_folder + "/report-" + std::to_string(std::time(nullptr)) + ".txt";
    {
        std::ofstream report(path);
        report << "Sweeply " << g_version << " ended unexpectedly.\n\nWhat was thrown: " << whatIsThrown() << "\n\n";
        void* frames[kDeepest];
        const int depth = ::backtrace(frames, kDeepest);
        if (char** names = ::backtrace_symbols(frames, depth)) {
            for (int frame = 0; frame < depth; ++frame)
                report << names[frame] << "\n";
            std::free(names);
        }
    }
    std::fprintf(stderr, "sweeply: ended unexpectedly; %s says more\n", path.c_str());
    std::abort();
}

} // namespace

void reportUncaughtExceptions(std::string folder, std::string version) {
    g_folder = std::move(folder);
    g_version = std::move(version);
    std::set_terminate(writeReport);
}

} // namespace sweeply
