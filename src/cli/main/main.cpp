#include "cli/Commands.h"
#include "platform/Localization.h"

#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    try {
        const auto program = std::filesystem::read_symlink("/proc/self/exe");
        sweeply::bindTextDomain(program.parent_path().parent_path() / "share" / "locale");
        return sweeply::runCommandLine({argv, argv + argc});
    } catch (const std::exception& exception) {
        std::cerr << "sweeply-cli: " << exception.what() << "\n";
        return 1;
    }
}
