#include "ui/MacPlaces.h"

#include "app/Target.h"
#include "platform/Localization.h"
#include "ui/TargetVolume.h"
#include "ui/Text.h"

#include <QStorageInfo>
#include <algorithm>

namespace sweeply {

MacPlace lookAtPlace(const QString& path) {
    const auto files = FileManager::open(utf8(path));
    if (!files)
        return {path, {}, localized("It is not there now. Is its volume mounted?")};
    const auto version = SystemVersion::read(**files);
    if (!version && version.error().kind == ErrorKind::NotFound)
        return {path, {}, localized("It holds no Mac OS X system.")};
    if (!version)
        return {path, {}, shown(version.error().message())};
    const auto system =
        QString::fromStdString(localizedFormat("Mac OS X %@", {utf8(shown(version->productVersion()))}));
    if (!version->isOnTigerOrBetter())
        return {
            path, {}, system + QStringLiteral(": ") + localized("older than 10.4, which is the first that is known.")};
    return {path, system, {}};
}

QList<MacPlace> findMacPlaces(const QStringList& last) {
    QList<MacPlace> places;
    const auto isListed = [&places](const QString& path) {
        return std::ranges::find(places, path, &MacPlace::path) != places.end();
    };
    for (const auto& volume : QStorageInfo::mountedVolumes()) {
        if (!volume.isReady() || isListed(volume.rootPath()))
            continue;
        const auto place = lookAtPlace(volume.rootPath());
        if (place.obstacle.isEmpty() || isMacFileSystem(QString::fromUtf8(volume.fileSystemType())))
            places << place;
    }
    for (const auto& path : last) {
        if (!isListed(path))
            places << lookAtPlace(path);
    }
    return places;
}

} // namespace sweeply
