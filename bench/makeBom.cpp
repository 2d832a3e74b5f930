// makeBom: writes the bill of materials of the paths on its input, one a line, to its output.
#include "formats/BillOfMaterials.h"

#include <iostream>

int main() {
    std::vector<sweeply::bom::Entry> entries;
    for (std::string line; std::getline(std::cin, line);) {
        sweeply::bom::Entry entry;
        entry.path = line;
        entry.mode = 0100644;
        entries.push_back(std::move(entry));
    }
    std::cout << sweeply::bom::write(entries);
    return std::cout.flush() ? 0 : 1;
}
