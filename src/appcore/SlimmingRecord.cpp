#include "appcore/SlimmingRecord.h"

#include "platform/FileManager.h"
#include "platform/TargetPath.h"

#include <climits>
#include <utility>

namespace sweeply {

namespace {

constexpr const char* kName = "Slimming";

} // namespace

SlimmingRecord::SlimmingRecord(FileManager& files, const std::string& stateFolder, std::string_view copy) {
    const std::string path = joinedPath(stateFolder, kName);
    if (!files.createDirectoryAtPath(stateFolder))
        return;
    auto item = files.locate(path);
    if (!item)
        return;
    constexpr mode_t kPrivate = 0600;
    auto record = TemporaryFile::make(files.calls(), *std::move(item), kPrivate, path);
    if (record && record->write(copy, path))
        m_record.emplace(*std::move(record));
}

void SlimmingRecord::sweep(FileManager& files, const std::string& stateFolder,
                           const std::function<bool(const std::string&)>& remove) {
    files.sweepTemporaryFilesAtPath(stateFolder, [&](const std::string& name) {
        if (!isTemporaryNameFor(kName, name))
            return true;
        const auto copy = files.contentsAtPath(joinedPath(stateFolder, name), PATH_MAX);
        if (!copy || !isTemporaryName(lastPathComponent(*copy)))
            return true; // it was killed before it wrote that down
        const auto found = files.attributesOfItemAtPath(*copy, Links::DontFollow);
        return !found || found->type != FileType::Regular || remove(*copy);
    });
}

} // namespace sweeply
