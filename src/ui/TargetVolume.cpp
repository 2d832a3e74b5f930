#include "ui/TargetVolume.h"

#include "platform/Localization.h"
#include "ui/Text.h"

#include <QFileInfo>
#include <QStorageInfo>

namespace sweeply {

TargetVolume volumeOf(const QString& root) {
    const QStorageInfo volume(root);
    const auto total = static_cast<std::uint64_t>(std::max<qint64>(volume.bytesTotal(), 0));
    const auto free = static_cast<std::uint64_t>(std::max<qint64>(volume.bytesFree(), 0));
    return {volume.rootPath(),
            QString::fromUtf8(volume.device()),
            QString::fromUtf8(volume.fileSystemType()),
            volume.name(),
            total,
            total - std::min(free, total),
            volume.isReadOnly()};
}

bool isMacFileSystem(const QString& fileSystem) {
    return fileSystem.startsWith(QLatin1String("hfs")) || fileSystem == QLatin1String("apfs");
}

VolumeKind kindOf(const TargetVolume& volume, const QString& root) {
    if (volume.mountPoint != root)
        return VolumeKind::FolderOnVolume;
    if (volume.device.startsWith(QLatin1String("/dev/loop")) || volume.device.startsWith(QLatin1String("/dev/nbd")))
        return VolumeKind::DiskImage;
    return root == QLatin1String("/") || isMacFileSystem(volume.fileSystem) ? VolumeKind::MacsDisk
                                                                            : VolumeKind::OtherVolume;
}

QString captionOf(const TargetVolume& volume, const QString& root) {
    const auto place = utf8(shown(utf8(volume.mountPoint)));
    const auto system = utf8(shown(utf8(volume.fileSystem)));
    switch (kindOf(volume, root)) {
    case VolumeKind::MacsDisk:
        return localized("The Mac's disk");
    case VolumeKind::DiskImage:
        return QString::fromStdString(localizedFormat("A disk image, mounted in %@ (%@)", {place, system}));
    case VolumeKind::OtherVolume:
        return QString::fromStdString(localizedFormat("The volume mounted in %@ (%@)", {place, system}));
    case VolumeKind::FolderOnVolume:
        break;
    }
    return QString::fromStdString(localizedFormat(
        "Not the Mac's own disk: its files lie in a folder of this machine, on the volume %@ (%@)", {place, system}));
}

QString nameOfTarget(const TargetVolume& volume, const QString& root) {
    if (volume.mountPoint == root && !volume.label.isEmpty())
        return shown(utf8(volume.label));
    return root == QLatin1String("/") ? localized("My Mac") : shown(utf8(QFileInfo(root).fileName()));
}

} // namespace sweeply
