#include "appcore/sizes/FolderContents.h"

#include "platform/DirectoryEnumerator.h"
#include "platform/DirectoryReader.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"
#include "platform/TreeSize.h"
#include "platform/VolumeBoundary.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

namespace sweeply {

namespace {

/// What was lost of a folder, by a second, slower look.
void findWhatIsMissing(const FileManager& files, const std::string& path, const std::stop_token& stop,
                       ReadProblems& problems) {
    auto walk = files.enumeratorAtPath(path, problems);
    while (const auto entry = stop.stop_requested() ? std::nullopt : walk.next()) {
        if (entry->type != FileType::Directory)
            (void)walk.attributes(); // adds what it cannot read
    }
}

} // namespace

Result<void> measureContents(const FileManager& files, std::string_view path, SizeUnits units,
                             const std::stop_token& stop, const std::function<void(FolderPart)>& found,
                             ReadProblems& problems) {
    const auto folder = files.root().openItem(path, O_RDONLY | O_DIRECTORY);
    if (!folder)
        return Failure(folder.error());
    const VolumeBoundary boundary(folder->get());
    const auto block = allocationBlock(units);
    DirectoryReader reader(folder->get());
    while (const auto entry = stop.stop_requested() ? std::nullopt : reader.next()) {
        FolderPart part{entry->name, entry->type};
        const auto place = joinedPath(path, part.name);
        if (part.type == FileType::Directory) {
            if (auto opened = boundary.openFolder(folder->get(), entry->name)) {
                const auto measured = measureTree(std::move(opened), block, {}, stop, Mounts::PassOver);
                part.size = measured.size;
                part.isWhole = measured.isWhole;
                if (!part.isWhole)
                    findWhatIsMissing(files, place, stop, problems);
            } else {
                const int reason = errno;
                part.isOtherVolume = reason == EXDEV;
                part.isWhole = part.isOtherVolume;
                if (!part.isWhole)
                    problems.addFailure(systemError(reason, place));
            }
        } else {
            struct stat status {};
            if (::fstatat(folder->get(), entry->name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
                part.size = roundedUp(static_cast<std::uint64_t>(status.st_size), block);
            } else if (const int reason = errno; reason != ENOENT) {
                part.isWhole = false; // the folder shows names and nothing else
                problems.addFailure(systemError(reason, place));
            } else {
                continue; // gone meanwhile
            }
        }
        found(std::move(part));
    }
    if (reader.errorNumber() != 0)
        return Failure(systemError(reader.errorNumber(), path));
    return {};
}

} // namespace sweeply
