#include "cli/Commands.h"
#include "platform/Localization.h"

#include <exception>
#include <filesystem>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    try {
        const auto program = std::filesystem::read_symlink("/proc/self/exe");
        sweeply::bindTextDomain(program.parent_path().parent_path() / "share" / "locale");
        return sweeply::runCommandLine({argv, argv + argc});
    } catch (const std::exception& exception) {
        sweeply::complain(exception.what());
        return 1;
    }
}
