#include "engine/record/RecordWriter.h"

#include "platform/FileManager.h"
#include "platform/SystemCalls.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sweeply {

namespace {

constexpr mode_t kPrivateFolder = 0700;
constexpr mode_t kPrivateFile = 0600;
constexpr std::chrono::seconds kLongestUnsynchronized{1};
/// More than any line takes, and so much at a time that it is seldom asked for.
constexpr std::uint64_t kRoomForOneLine = std::uint64_t{64} << 10U;
constexpr std::uint64_t kReservedAtOnce = std::uint64_t{1} << 20U;
constexpr int kNamesTried = 100;

/// By the second, and within it by parts of one, so that names stand in the order in which runs began.
std::string newRunName() {
    static constexpr std::string_view kDigits = "0123456789abcdefghijklmnopqrstuvwxyz";
    constexpr long kNanoseconds = 1'000'000'000;
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    std::string name = timeText(now.tv_sec);
    std::erase_if(name, [](char c) { return c == '-' || c == ':'; });
    name += '-';
    long part = now.tv_nsec;
    for (int i = 0; i < 4; ++i) {
        part *= static_cast<long>(kDigits.size());
        name += kDigits[static_cast<std::size_t>(part / kNanoseconds)];
        part %= kNanoseconds;
    }
    return name;
}

} // namespace

RecordWriter::RecordWriter(FileManager& files, RunArchive& archive, RunHeader header)
    : m_files(files), m_archive(archive), m_header(std::move(header)) {
    m_header.run = newRunName();
}

std::string RecordWriter::keptFolder() const { return m_archive.keptFolder() + "/" + m_header.run; }

Error RecordWriter::cannotWrite(const std::string& reason) const {
    return {ErrorKind::NoSpace, m_archive.recordFile(m_header.run), "cannot write down what is removed: " + reason};
}

Result<void> RecordWriter::create() {
    const auto folder = m_files.createDirectoryAtPath(m_archive.runsFolder(), kPrivateFolder);
    if (!folder && folder.error().kind == ErrorKind::ReadOnly) {
        m_isReadOnly = true;
        return {};
    }
    if (!folder)
        return Failure(cannotWrite(folder.error().reason));
    auto& calls = m_files.calls();
    for (int attempt = 0; !m_file && attempt < kNamesTried; ++attempt) {
        if (attempt > 0)
            m_header.run = newRunName();
        const auto place = m_files.locate(m_archive.recordFile(m_header.run));
        if (!place)
            return Failure(cannotWrite(place.error().reason));
        m_file = UniqueFd(calls.create(place->parent.get(), place->name.c_str(), O_WRONLY | O_APPEND, kPrivateFile));
        if (!m_file && errno == EROFS) {
            m_isReadOnly = true;
            return {};
        }
        if (!m_file && errno != EEXIST)
            break;
        struct stat owner {};
        if (m_file && ::geteuid() == 0 && ::fstat(place->parent.get(), &owner) == 0 &&
            calls.fchown(m_file.get(), owner.st_uid, owner.st_gid) != 0)
            return Failure(cannotWrite(systemError(errno, {}).reason));
        // A record that a power cut takes away with all it says would be none.
        if (const UniqueFd runs(::openat(place->parent.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)); m_file && runs)
            (void)calls.fsync(runs.get());
    }
    if (!m_file)
        return Failure(cannotWrite(systemError(errno, {}).reason));
    m_isMade = true;
    m_header.started = timeText(std::time(nullptr));
    m_synchronized = std::chrono::steady_clock::now();
    return reserve().and_then([this] { return append(headerLine(m_header)); });
}

Result<void> RecordWriter::reserve() {
    if (m_reserved >= m_size + kRoomForOneLine)
        return {};
    if (m_files.calls().reserve(m_file.get(), m_size + kReservedAtOnce) == 0) {
        m_reserved = m_size + kReservedAtOnce;
        return {};
    }
    if (errno == EOPNOTSUPP || errno == ENOSYS) {
        m_reserved = UINT64_MAX; // not known there; a line that does not fit stops the run one change later
        return {};
    }
    return Failure(cannotWrite(systemError(errno, {}).reason));
}

Result<void> RecordWriter::append(const std::string& line) {
    const auto written = m_files.calls().write(m_file.get(), line.data(), line.size());
    if (written == static_cast<ssize_t>(line.size())) {
        m_size += line.size();
        return {};
    }
    m_failure = cannotWrite(systemError(written < 0 ? errno : ENOSPC, {}).reason);
    return Failure(*m_failure);
}

Result<void> RecordWriter::synchronize() {
    m_synchronized = std::chrono::steady_clock::now();
    if (m_files.calls().fdatasync(m_file.get()) == 0)
        return {};
    m_failure = cannotWrite(systemError(errno, {}).reason);
    return Failure(*m_failure);
}

Result<void> RecordWriter::willChange() {
    if (m_failure)
        return Failure(*m_failure);
    if (m_isReadOnly)
        return {};
    if (!m_file) {
        if (const auto made = create(); !made) {
            m_failure = made.error();
            return made;
        }
        if (m_isReadOnly)
            return {};
    }
    if (const auto reserved = reserve(); !reserved) {
        m_failure = reserved.error();
        return reserved;
    }
    const bool isDue = std::chrono::steady_clock::now() - m_synchronized >= kLongestUnsynchronized;
    return isDue ? synchronize() : Result<void>();
}

Result<void> RecordWriter::willKeep(const KeptItem& item) {
    if (m_isReadOnly)
        return Failure(cannotWrite("the volume is read-only"));
    const auto written = append(keepLine(item)).and_then([this] { return synchronize(); });
    if (written)
        m_keptNow = item.number;
    return written;
}

void RecordWriter::changed(const ChangeReport& report) {
    auto item = recordedItem(report);
    if (report.outcome.kind == OutcomeKind::Kept)
        item.number = m_keptNow;
    m_keptNow = 0;
    add(item);
}

void RecordWriter::add(const RecordedItem& item) {
    if (m_file && !m_failure)
        (void)append(itemLine(item)); // a failure is kept for the next change
}

void RecordWriter::finish(const RunSums& sums) {
    if (!m_file)
        return;
    if (!m_failure && append(endLine(timeText(std::time(nullptr)), sums)))
        (void)synchronize();
    (void)m_files.calls().ftruncate(m_file.get(), static_cast<off_t>(m_size)); // gives back what was reserved
    m_file.reset();
    m_archive.prune();
}

} // namespace sweeply
