#include "modules/binaries/BinarySlimmer.h"

#include "appcore/PrivilegedExecution.h"
#include "appcore/RemovalPrimitives.h"
#include "platform/Process.h"
#include "platform/ToolTable.h"

#include <utility>

namespace sweeply {

namespace {

constexpr const char* kDitto = "/usr/bin/ditto";

std::string copyNameOf(const std::string& name) { return name + ".ditto"; }

/// What a tool said, without its own name in front.
std::string reasonIn(const std::string& errors) {
    const std::string line = errors.substr(0, errors.find('\n'));
    const auto colon = line.find(": ");
    return colon == std::string::npos ? line : line.substr(colon + 2);
}

} // namespace

BinarySlimmer::BinarySlimmer(FileManager& files, RemovalPrimitives& removals, PrivilegedExecution& privileged,
                             const ToolTable& tools, std::function<void(Step)> reached)
    : m_files(files), m_removals(removals), m_privileged(privileged), m_tools(tools), m_reached(std::move(reached)) {}

bool BinarySlimmer::slimBinaryAtPath(const std::string& path, const std::vector<std::string>& keptSlices) {
    const auto attributes = m_files.attributesOfItemAtPath(path, Links::DontFollow);
    if (!attributes && attributes.error().kind == ErrorKind::NotFound)
        return true;
    if (!attributes)
        return m_removals.failed(path, attributes.error());
    if (attributes->type != FileType::Regular)
        return m_removals.failed(path, {ErrorKind::WrongType, path, "not a regular file"});
    if (attributes->linkCount > 1)
        return m_removals.failed(
            path, {ErrorKind::Other, path, "has another name elsewhere (a hard link), which would keep the old code"});
    // From the file's own folder, held open: nobody can put another one in its place on the way to the tool.
    const auto item = m_files.removals().locateForRemoval(path);
    if (!item)
        return m_removals.failed(path, item.error());
    std::vector<std::string> arguments;
    for (const auto& slice : keptSlices)
        arguments.insert(arguments.end(), {"-arch", slice});
    arguments.insert(arguments.end(), {"./" + item->name, "./" + copyNameOf(item->name)});

    auto done = copy(*item, arguments);
    if (done) {
        m_reached(Step::Copied);
        done = m_files.replaceFile(*item, copyNameOf(item->name));
    }
    if (!done && m_privileged.isAuthorised())
        return slimBinaryWithPrivilidgesAtPath(path, *item, arguments);
    if (!done)
        return m_removals.failed(path, {done.error().kind, path, done.error().reason});
    m_reached(Step::Replaced);
    return true;
}

Result<void> BinarySlimmer::copy(const FileManager::Located& item, const std::vector<std::string>& arguments) const {
    const auto ditto = m_tools.programFor(kDitto);
    if (!ditto)
        return Failure(ditto.error());
    ProcessOptions options;
    options.workingDirectory = item.parent.get();
    options.output = OutputTo::Discard;
    options.errors = OutputTo::Capture;
    const auto ended = runProcess(*ditto, arguments, options);
    if (!ended)
        return Failure(ended.error());
    if (!ended->succeeded())
        return Failure(Error{ErrorKind::Other, item.name, reasonIn(ended->errors)});
    return {};
}

bool BinarySlimmer::slimBinaryWithPrivilidgesAtPath(const std::string& path, const FileManager::Located& item,
                                                    const std::vector<std::string>& arguments) {
    const auto run = [&](const char* tool, const std::vector<std::string>& words) {
        const auto status = m_privileged.statusOfCommandWithPrivilidges(tool, words, item.parent.get());
        return status && *status == 0;
    };
    if (!run(kDitto, arguments))
        return m_removals.failed(path,
                                 {ErrorKind::Other, path, "could not be slimmed, also with administrator rights"});
    m_reached(Step::Copied);
    const std::string copied = "./" + copyNameOf(item.name);
    if (run("/bin/mv", {"-f", copied, "./" + item.name})) {
        m_reached(Step::Replaced);
        return true;
    }
    run("/bin/rm", {"-f", copied});
    return m_removals.failed(path, {ErrorKind::Other, path, "could not be replaced, also with administrator rights"});
}

} // namespace sweeply
