#include "engine/record/RunArchive.h"

#include "appcore/FolderConstants.h"
#include "platform/FileManager.h"
#include "platform/SystemCalls.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace sweeply {

namespace {

constexpr std::size_t kRecordsKept = 100;
constexpr std::size_t kLargestRecord = std::size_t{1} << 30U;
constexpr std::string_view kExtension = ".jsonl";
/// A digit for each 'd'.
constexpr std::string_view kShape = "ddddddddTddddddZ-";
constexpr std::size_t kRandomLetters = 4;

} // namespace

bool isRunName(std::string_view text) {
    if (text.size() != kShape.size() + kRandomLetters)
        return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        const bool isLetter = text[i] >= 'a' && text[i] <= 'z';
        if (i >= kShape.size() ? !isDigit && !isLetter : kShape[i] == 'd' ? !isDigit : text[i] != kShape[i])
            return false;
    }
    return true;
}

RunArchive::RunArchive(FileManager& files, const FolderConstants& folders,
                       std::function<void(const Error&)> reportProblem)
    : m_files(files), m_reportProblem(std::move(reportProblem)),
      m_runsFolder(folders.expandTilde("~/Library/Application Support/Sweeply/Runs")),
      m_keptFolder(folders.expandTilde("~/Library/Application Support/Sweeply/Kept")) {}

std::string RunArchive::recordFile(const std::string& run) const {
    return joinedPath(m_runsFolder, run + std::string(kExtension));
}

std::string RunArchive::folderOf(const std::string& run, std::uint32_t number) const {
    return joinedPath(joinedPath(m_keptFolder, run), std::to_string(number));
}

std::vector<std::string> RunArchive::runs() const {
    std::vector<std::string> names;
    const auto entries = m_files.contentsOfDirectoryAtPath(m_runsFolder);
    if (!entries && entries.error().kind != ErrorKind::NotFound)
        m_reportProblem(entries.error());
    for (const auto& entry : entries.value_or(std::vector<DirectoryEntry>())) {
        const std::string_view name = entry.name;
        if (name.ends_with(kExtension) && isRunName(name.substr(0, name.size() - kExtension.size())))
            names.emplace_back(name.substr(0, name.size() - kExtension.size()));
    }
    std::ranges::sort(names, std::greater());
    return names;
}

Result<RunRecord> RunArchive::record(const std::string& run) const {
    if (!isRunName(run))
        return Failure(Error{ErrorKind::NotFound, run, "no such run"});
    const auto bytes = m_files.contentsAtPath(recordFile(run), kLargestRecord);
    if (!bytes)
        return Failure(bytes.error().kind == ErrorKind::NotFound ? Error{ErrorKind::NotFound, run, "no such run"}
                                                                 : bytes.error());
    auto record = parseRunRecord(*bytes);
    if (record && record->header.run != run)
        record = Failure(Error{ErrorKind::Damaged, {}, "no record of a run: it tells of another one"});
    if (!record)
        return Failure(Error{record.error().kind, recordFile(run), record.error().reason});
    return record;
}

void RunArchive::forEachRecord(const std::function<bool(RunRecord)>& visit) const {
    for (const auto& run : runs()) {
        auto found = record(run);
        if (!found)
            m_reportProblem(found.error());
        else if (!visit(*std::move(found)))
            return;
    }
}

std::vector<RunRecord> RunArchive::records() const {
    std::vector<RunRecord> records;
    forEachRecord([&](RunRecord record) {
        records.push_back(std::move(record));
        return true;
    });
    return records;
}

Result<void> RunArchive::append(const std::string& run, const std::string& line) {
    const std::string path = recordFile(run);
    const auto place = m_files.locate(path);
    if (!place)
        return Failure(place.error());
    const UniqueFd file(
        ::openat(place->parent.get(), place->name.c_str(), O_RDWR | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0)
        return Failure(systemError(errno, path));
    if (!S_ISREG(status.st_mode))
        return Failure(Error{ErrorKind::WrongType, path, "not a regular file"});
    auto& calls = m_files.calls();
    // A line that was cut short would take the new one with it.
    off_t length = status.st_size;
    for (char last = 0; length > 0 && ::pread(file.get(), &last, 1, length - 1) == 1 && last != '\n';)
        --length;
    if (length != status.st_size && calls.ftruncate(file.get(), length) != 0)
        return Failure(systemError(errno, path));
    const auto written = calls.write(file.get(), line.data(), line.size());
    if (written != static_cast<ssize_t>(line.size()))
        return Failure(systemError(written < 0 ? errno : ENOSPC, path));
    if (calls.fdatasync(file.get()) != 0)
        return Failure(systemError(errno, path));
    return {};
}

bool RunArchive::holdsAnythingOf(const std::string& run, std::uint32_t number) const {
    return m_files.attributesOfItemAtPath(folderOf(run, number), Links::DontFollow).has_value();
}

void RunArchive::prune() {
    const auto all = runs();
    for (std::size_t i = kRecordsKept; i < all.size(); ++i) {
        const auto old = record(all[i]);
        const bool hasKept = old && std::ranges::any_of(old->kept, [&](const KeptItem& item) {
                                 return !old->restored.contains(item.number) &&
                                        (!old->purged.contains(item.number) || holdsAnythingOf(all[i], item.number));
                             });
        const auto place = m_files.locate(recordFile(all[i]));
        if (old && !hasKept && place)
            (void)m_files.calls().unlinkat(place->parent.get(), place->name.c_str(), 0);
    }
}

} // namespace sweeply
