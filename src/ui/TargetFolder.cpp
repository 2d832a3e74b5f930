#include "ui/TargetFolder.h"

#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"

#include <QCollator>
#include <algorithm>
#include <array>

namespace sweeply {

namespace {

bool hasBundlesExtension(const std::string& name) {
    constexpr std::array kExtensions{"app", "pkg", "mpkg", "wdgt", "prefPane", "plugin", "bundle", "framework"};
    return std::ranges::find(kExtensions, pathExtension(name)) != kExtensions.end();
}

} // namespace

Result<std::vector<TargetEntry>> entriesOfTargetFolder(const FileManager& files, const std::string& path,
                                                       const std::stop_token& stop) {
    ReadProblems problems;
    std::vector<TargetEntry> entries;
    auto walk = files.enumeratorAtPath(path, problems);
    while (const auto entry = walk.next()) {
        if (stop.stop_requested())
            return std::vector<TargetEntry>();
        TargetEntry found{entry->path, entry->type == FileType::Directory, false};
        if (found.isFolder)
            walk.skipDescendants();
        else if (entry->type == FileType::SymbolicLink)
            found.isFolder = files.directoryExistsAtPath(joinedPath(path, found.name));
        found.isBundle = found.isFolder && hasBundlesExtension(found.name);
        entries.push_back(std::move(found));
    }
    if (walk.failure())
        return Failure(Error{walk.failure()->kind, path, walk.failure()->reason});
    QCollator collator;
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<std::pair<QCollatorSortKey, std::size_t>> order;
    order.reserve(entries.size());
    for (std::size_t at = 0; at < entries.size(); ++at)
        order.emplace_back(collator.sortKey(QString::fromStdString(entries[at].name)), at);
    const auto isPlainFolder = [&](std::size_t at) { return entries[at].isFolder && !entries[at].isBundle; };
    std::ranges::sort(order, [&](const auto& left, const auto& right) {
        const bool folderFirst = isPlainFolder(left.second);
        return folderFirst != isPlainFolder(right.second) ? folderFirst : left.first.compare(right.first) < 0;
    });
    std::vector<TargetEntry> sorted;
    sorted.reserve(entries.size());
    for (const auto& [key, at] : order)
        sorted.push_back(std::move(entries[at]));
    return sorted;
}

} // namespace sweeply
