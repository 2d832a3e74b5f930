#pragma once

#include <QString>
#include <cstdint>
#include <string>

namespace sweeply {

enum class VolumeKind {
    MacsDisk,
    DiskImage,      ///< mounted from a file
    OtherVolume,    ///< all of a volume of a kind that no Mac has
    FolderOnVolume, ///< of this machine
};

/// The volume of this machine that a target lies on.
struct TargetVolume {
    QString mountPoint;
    QString device;
    QString fileSystem;
    QString label;           ///< empty where it has none
    std::uint64_t total = 0; ///< bytes
    std::uint64_t used = 0;
    bool isReadOnly = false;
};

/// Asks the system about the volume of the folder `root`.
[[nodiscard]] TargetVolume volumeOf(const QString& root);
/// Does the Mac keep its disks in this way?
[[nodiscard]] bool isMacFileSystem(const QString& fileSystem);
[[nodiscard]] VolumeKind kindOf(const TargetVolume& volume, const QString& root);
/// What the volume is, for whoever sees how full it is.
[[nodiscard]] QString captionOf(const TargetVolume& volume, const QString& root);
/// What a person calls the Mac in `root`: its volume's name, else its folder's.
[[nodiscard]] QString nameOfTarget(const TargetVolume& volume, const QString& root);

} // namespace sweeply
