#pragma once

#include "cli/sample/SampleWriter.h"

#include <string>
#include <string_view>

namespace sweeply::sample {

/// Programs for more than one kind of processor, as separate lists of slices.
enum class Slices { None, X86_64, Intel, PowerPCAndIntel32, ThreeWay, FourWay };

/// What stands in a bundle's property list and which program it holds. An empty text is left out of the list.
struct Bundle {
    std::string_view identifier;
    std::string_view name;
    std::string_view executable;
    std::string_view version = "1.0";
    std::string_view type = "BNDL";
    Slices slices = Slices::Intel;
    std::uint32_t codeSize = 12 * 1024; ///< bytes in each slice
};

/// Localised folders by the names of older systems or by codes.
enum class Localisations { OldNames, Codes, EnglishOnly };

/// The property list, the type file and the program of the bundle at `path`, below its "Contents".
void writeBundle(SampleWriter& out, const std::string& path, const Bundle& bundle);

/// A framework in `folder`, versioned the usual way, with headers and localisations of its own.
void writeFramework(SampleWriter& out, const std::string& folder, const Bundle& bundle);

/// "*.lproj" folders in the folder `resources`.
void writeLocalisations(SampleWriter& out, const std::string& resources, Localisations names);

/// A program for the processors named.
void writeProgram(SampleWriter& out, const std::string& path, Slices slices, std::uint32_t codeSize);

} // namespace sweeply::sample
