#include "cli/sample/SampleWriter.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

namespace sweeply::sample {

namespace {

constexpr std::size_t kLargestOpaqueFile = 1024 * 1024;

/// The SplitMix64 sequence: cheap, and the same on every machine.
std::string noise(std::size_t size) {
    std::string bytes;
    bytes.reserve(size);
    std::uint64_t state = 2010;
    while (bytes.size() < size) {
        state += 0x9e3779b97f4a7c15;
        std::uint64_t value = state;
        value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9;
        value = (value ^ (value >> 27)) * 0x94d049bb133111eb;
        value ^= value >> 31;
        for (unsigned shift = 0; shift < 64; shift += 8)
            bytes.push_back(static_cast<char>(value >> shift));
    }
    return bytes;
}

std::size_t hashOf(std::string_view text) {
    std::uint64_t hash = 0xcbf29ce484222325; // FNV-1a: std::hash may differ from one library to the next
    for (char c : text)
        hash = (hash ^ static_cast<std::uint8_t>(c)) * 0x100000001b3;
    return static_cast<std::size_t>(hash);
}

constexpr std::array<std::string_view, 4> kLogLines{
    "started a session for sam",
    "connection to 192.0.2.17:443 timed out, will retry in 30 seconds",
    "*** -[NSCFString objectForKey:]: unrecognized selector sent to instance 0x1004a2c40",
    "finished in 0.042 seconds, nothing to do",
};

} // namespace

SampleWriter::SampleWriter(FileManager& files, unsigned scale)
    : m_files(files), m_scale(scale), m_folders{"/"}, m_noise(noise(2 * kLargestOpaqueFile)) {}

void SampleWriter::fail(Error error) {
    if (!m_failure)
        m_failure = std::move(error);
}

bool SampleWriter::makeParent(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash > 0)
        folder(path.substr(0, slash));
    return !m_failure;
}

void SampleWriter::folder(const std::string& path) {
    if (m_folders.contains(path) || !makeParent(path))
        return;
    if (auto made = m_files.createDirectoryAtPath(path); !made)
        return fail(made.error());
    m_folders.insert(path);
    ++m_totals.folders;
}

void SampleWriter::file(const std::string& path, std::string_view contents, mode_t mode) {
    if (!makeParent(path))
        return;
    if (auto made = m_files.createFileAtPath(path, contents, mode); !made)
        return fail(made.error());
    ++m_totals.files;
    m_totals.bytes += contents.size();
}

void SampleWriter::opaqueFile(const std::string& path, std::size_t size) {
    file(path, std::string_view(m_noise).substr(hashOf(path) % kLargestOpaqueFile, size));
}

void SampleWriter::log(const std::string& path, std::size_t size) {
    std::string text;
    for (unsigned line = 0; text.size() < size; ++line) {
        text += "Jun 23 10:" + std::to_string(10 + line / 60 % 50) + ":" + std::to_string(10 + line % 50);
        text += " sams-macbook [" + std::to_string(200 + line % 7) + "]: ";
        text += kLogLines[line % kLogLines.size()];
        text += '\n';
    }
    text.resize(size);
    if (!text.empty())
        text.back() = '\n';
    file(path, text);
}

void SampleWriter::propertyList(const std::string& path, const plist::Value& value, PropertyListForm form) {
    file(path, form == PropertyListForm::Xml ? plist::writeXml(value) : plist::writeBinary(value));
}

void SampleWriter::link(const std::string& path, const std::string& destination) {
    if (!makeParent(path))
        return;
    if (auto made = m_files.createSymbolicLinkAtPath(path, destination); !made)
        return fail(made.error());
    ++m_totals.files;
}

void SampleWriter::setModified(const std::string& path, std::time_t seconds) {
    if (m_failure)
        return;
    const auto located = m_files.locate(path);
    if (!located)
        return fail(located.error());
    const timespec times[2] = {{seconds, 0}, {seconds, 0}};
    if (::utimensat(located->parent.get(), located->name.c_str(), times, AT_SYMLINK_NOFOLLOW) != 0)
        fail(systemError(errno, path));
}

std::string copyName(std::string_view name, unsigned copy) {
    return copy == 1 ? std::string(name) : std::string(name) + " " + std::to_string(copy);
}

} // namespace sweeply::sample
