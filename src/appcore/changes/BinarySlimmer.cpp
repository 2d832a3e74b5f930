#include "appcore/changes/BinarySlimmer.h"

#include "appcore/PrivilegedExecution.h"
#include "appcore/SlimmingRecord.h"
#include "formats/MachOReader.h"
#include "platform/Process.h"
#include "platform/TargetPath.h"
#include "platform/TemporaryFiles.h"
#include "platform/ToolTable.h"

#include <algorithm>
#include <utility>

namespace sweeply {

namespace {

constexpr const char* kDitto = "/usr/bin/ditto";

/// What a tool said, without its own name in front.
std::string reasonIn(const std::string& errors) {
    const std::string line = errors.substr(0, errors.find('\n'));
    const auto colon = line.find(": ");
    return colon == std::string::npos ? line : line.substr(colon + 2);
}

} // namespace

void BinarySlimmer::sweep() {
    SlimmingRecord::sweep(m_files, m_stateFolder, [this](const std::string& left) {
        const auto removed = m_changes.remove(left);
        return removed || removed.error().kind == ErrorKind::NotFound;
    });
}

Result<void> BinarySlimmer::slimBinaryAtPath(const std::string& path, const std::vector<std::string>& keptSlices) {
    const auto attributes = m_files.attributesOfItemAtPath(path, Links::DontFollow);
    if (!attributes)
        return Failure(attributes.error());
    if (attributes->type != FileType::Regular)
        return Failure(Error{ErrorKind::WrongType, path, "not a regular file"});
    if (attributes->linkCount > 1)
        return Failure(
            Error{ErrorKind::Other, path, "has another name elsewhere (a hard link), which would keep the old code"});
    // From the file's own folder, held open: nobody can put another one in its place on the way to the tool.
    const auto item = m_files.removals().locateForRemoval(path);
    if (!item)
        return Failure(item.error());
    Task task{path, *item, temporaryName(item->name), {}};
    for (const auto& slice : keptSlices)
        task.arguments.insert(task.arguments.end(), {"-arch", slice});
    task.arguments.insert(task.arguments.end(), {"./" + item->name, "./" + task.copyName});

    const SlimmingRecord record(m_files, m_stateFolder, joinedPath(pathWithoutLastComponent(path), task.copyName));
    auto done = copy(task);
    if (done) {
        m_reached(Step::Copied);
        done = m_files.replaceFile(*item, task.copyName);
    }
    if (!done && m_privileged.isAuthorised())
        return slimBinaryWithPrivilidgesAtPath(task);
    if (!done)
        return Failure(Error{done.error().kind, path, done.error().reason});
    m_reached(Step::Replaced);
    return {};
}

bool BinarySlimmer::isSlim(const std::string& path, const std::vector<std::string>& keptSlices) const {
    const auto start = m_files.beginningOfFileAtPath(path, macho::kFatHeaderSize);
    if (!start || !macho::mayBeFat(*start))
        return start.has_value(); // one for a single processor, or no executable any more
    const auto attributes = m_files.attributesOfItemAtPath(path, Links::DontFollow);
    const auto tableSize = macho::fatTableSize(*start).value_or(0);
    const auto head = m_files.beginningOfFileAtPath(path, static_cast<std::size_t>(tableSize));
    const auto fat = attributes && head ? macho::readFat(*head, attributes->size) : tl::unexpected(std::string());
    return fat && std::ranges::all_of(fat->slices, [&](const macho::FatArch& slice) {
               const auto* architecture = macho::architectureOf(slice);
               return architecture && std::ranges::find(keptSlices, architecture->name) != keptSlices.end();
           });
}

Result<void> BinarySlimmer::copy(const Task& task) const {
    const auto ditto = m_tools.programFor(kDitto);
    if (!ditto)
        return Failure(ditto.error());
    ProcessOptions options;
    options.workingDirectory = task.item.parent.get();
    options.output = OutputTo::Discard;
    options.errors = OutputTo::Capture;
    const auto ended = runProcess(*ditto, task.arguments, options);
    if (!ended)
        return Failure(ended.error());
    if (!ended->succeeded())
        return Failure(Error{ErrorKind::Other, task.item.name, reasonIn(ended->errors)});
    return {};
}

Result<void> BinarySlimmer::slimBinaryWithPrivilidgesAtPath(const Task& task) {
    // An earlier run's copies that only an administrator may remove.
    sweep();
    const auto run = [&](const char* tool, const std::vector<std::string>& words) {
        const auto status = m_privileged.statusOfCommandWithPrivilidges(tool, words, task.item.parent.get());
        return status && *status == 0;
    };
    const auto failed = [&](const char* reason) { return Failure(Error{ErrorKind::Other, task.path, reason}); };
    const std::string copied = "./" + task.copyName;
    if (!run(kDitto, task.arguments))
        return failed("could not be slimmed, also with administrator rights");
    m_reached(Step::Copied);
    if (run("/bin/mv", {"-f", copied, "./" + task.item.name})) {
        m_reached(Step::Replaced);
        return {};
    }
    run("/bin/rm", {"-f", copied});
    return failed("could not be replaced, also with administrator rights");
}

} // namespace sweeply
