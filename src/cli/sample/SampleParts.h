#pragma once

#include <string_view>

/// The parts of a sample volume. Each writes its own folders and files; a failure is kept in the writer.
namespace sweeply::sample {

class SampleWriter;

using Part = void (*)(SampleWriter&);

/// The folder of the volume's only user.
inline constexpr std::string_view kHome = "/Users/sam";

void writeSystem(SampleWriter& out);
void writeApplications(SampleWriter& out);
void writeExtensions(SampleWriter& out);
void writeLaunchItems(SampleWriter& out);
void writePreferences(SampleWriter& out);
void writeCaches(SampleWriter& out);
void writeLogs(SampleWriter& out);
void writePersonalFiles(SampleWriter& out);
void writePhotoLibraries(SampleWriter& out);
void writeJunk(SampleWriter& out);
/// Reads back what the parts before it have written.
void writeReceipts(SampleWriter& out);

} // namespace sweeply::sample
