#include "modules/ignorelist/ListArchive.h"

#include "platform/Process.h"
#include "platform/TargetPath.h"
#include "platform/TemporaryFolder.h"
#include "platform/ToolTable.h"
#include "platform/UniqueFd.h"

#include <algorithm>
#include <charconv>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <vector>

namespace sweeply {

namespace {

constexpr std::size_t kLargestContents = std::size_t{16} << 20U;
constexpr std::size_t kMostMembers = 500;

Failure refused(std::string reason) { return Failure(Error{ErrorKind::Damaged, "archive", std::move(reason)}); }

class Archive final {
  public:
    Archive(const ToolTable& tools, std::string folder, std::string_view wanted, const std::stop_token& stop)
        : m_tools(tools), m_folder(std::move(folder)), m_wanted(wanted), m_stop(stop) {}

    Result<std::string> readWanted(std::string_view bytes, std::string_view name) {
        if (name.ends_with("zip"))
            return readFromZip(bytes);
        if (name.ends_with("tgz") || name.ends_with(".tar.gz"))
            return readFromTar(bytes);
        return refused("neither tgz, tar.gz nor zip");
    }

  private:
    Result<std::string> readFromTar(std::string_view bytes) {
        if (auto written = write("list.tar.gz", bytes); !written)
            return Failure(written.error());
        const auto tar = run("/usr/bin/gunzip", {"-dfc", "list.tar.gz"});
        if (!tar)
            return Failure(tar.error());
        if (auto written = write("list.tar", *tar); !written)
            return Failure(written.error());
        const auto listing = run("/usr/bin/tar", {"--quoting-style=escape", "--numeric-owner", "-tvf", "list.tar"});
        if (!listing)
            return Failure(listing.error());
        // "-rw-r--r-- 0/0  120 2009-06-02 10:00 NAME"
        const auto member = wantedMember(*listing, 2, 5);
        if (!member)
            return Failure(member.error());
        return run("/usr/bin/tar", {"-xOf", "list.tar", "--no-wildcards", "--", *member});
    }

    Result<std::string> readFromZip(std::string_view bytes) {
        if (auto written = write("list.zip", bytes); !written)
            return Failure(written.error());
        const auto listing = run("/usr/bin/unzip", {"-Z", "-s", "--h-t", "list.zip"});
        if (!listing)
            return Failure(listing.error());
        // "-rw-r--r--  3.0 unx  120 tx defN 09-Jun-02 10:00 NAME"
        const auto member = wantedMember(*listing, 3, 8);
        if (!member)
            return Failure(member.error());
        return run("/usr/bin/unzip", {"-p", "list.zip", *member});
    }

    /// Checks a listing with one member a line, its type and size among the columns and its name after them. The name
    /// of the wanted one.
    [[nodiscard]] Result<std::string> wantedMember(const std::string& listing, std::size_t sizeColumn,
                                                   std::size_t nameColumn) const {
        std::istringstream lines(listing);
        std::size_t members = 0;
        std::size_t total = 0;
        std::string found;
        for (std::string line; std::getline(lines, line);) {
            std::istringstream columns(line);
            std::vector<std::string> words(nameColumn);
            for (auto& word : words)
                columns >> word;
            std::string name;
            std::getline(columns >> std::ws, name);
            std::size_t size = 0;
            const auto& text = words[sizeColumn];
            const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), size);
            if (name.empty() || error != std::errc() || end != text.data() + text.size())
                return refused("a member that cannot be understood: " + line);
            if (line.front() != '-' && line.front() != 'd')
                return refused("a member that is neither a file nor a folder: " + name);
            if (name.front() == '/' || ("/" + name + "/").find("/../") != std::string::npos)
                return refused("a member that leads out of it: " + name);
            total += std::min(size, kLargestContents + 1);
            if (++members > kMostMembers || total > kLargestContents)
                return refused("its contents are too much");
            // The tools would take a name with these for a pattern, or for one that is written otherwise.
            const bool isPlain = name.find_first_of("*?[]\\") == std::string::npos;
            if (found.empty() && line.front() == '-' && isPlain && lastPathComponent(name) == m_wanted)
                found = name;
        }
        if (found.empty())
            return Failure(Error{ErrorKind::NotFound, std::string(m_wanted), "not in the archive"});
        return found;
    }

    [[nodiscard]] Result<void> write(const std::string& name, std::string_view bytes) const {
        std::ofstream file(m_folder + "/" + name, std::ios::binary);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        file.close();
        return file ? Result<void>() : Result<void>(Failure(Error{ErrorKind::Other, name, "could not be written"}));
    }

    /// What the tool wrote to its output.
    [[nodiscard]] Result<std::string> run(std::string_view tool, std::vector<std::string> arguments) const {
        const auto program = m_tools.programFor(tool);
        const UniqueFd folder(::open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!program)
            return Failure(program.error());
        ProcessOptions options;
        options.workingDirectory = folder.get();
        options.errors = OutputTo::Capture;
        options.captureLimit = kLargestContents + (std::size_t{4} << 20U);
        options.environment = {{"LC_ALL", "C"}, {"TAR_OPTIONS", ""}, {"UNZIP", ""}, {"ZIPINFO", ""}, {"GZIP", ""}};
        options.stop = m_stop;
        auto outcome = runProcess(*program, arguments, options);
        if (!outcome)
            return Failure(outcome.error());
        if (!outcome->succeeded())
            return refused(outcome->errors.substr(0, outcome->errors.find('\n')));
        return std::move(outcome->output);
    }

    const ToolTable& m_tools;
    const std::string m_folder;
    const std::string_view m_wanted;
    const std::stop_token m_stop;
};

} // namespace

Result<std::string> fileFromArchive(const ToolTable& tools, std::string_view archiveBytes, std::string_view archiveName,
                                    std::string_view wanted, const std::stop_token& stop) {
    const auto folder = TemporaryFolder::make();
    if (!folder)
        return Failure(folder.error());
    return Archive(tools, folder->path(), wanted, stop).readWanted(archiveBytes, archiveName);
}

} // namespace sweeply
