#include "cli/Commands.h"

#include <exception>
#include <iostream>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    try {
        return sweeply::runCommandLine({argv, argv + argc});
    } catch (const std::exception& exception) {
        std::cerr << "sweeply-cli: " << exception.what() << "\n";
        return 1;
    }
}
