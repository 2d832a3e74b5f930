#pragma once

#include <optional>
#include <string>

namespace sweeply {

class Alerts;

/// Does this program lie on a disk image: a volume that is read-only or mounted from a file?
[[nodiscard]] bool applicationIsRunningFromDiskImage();

/// A program in one folder of this machine, as people carry it about, and where such programs belong.
struct ProgramBundle {
    std::string path;
    std::string name;
    std::string applicationsFolder;
};

/// The folder that a program (an absolute path, ".../Sweeply.app/bin/sweeply") lies in alone, to be carried about;
/// nothing for one that was installed among others. It belongs into "Applications" in the folder `home`.
[[nodiscard]] std::optional<ProgramBundle> bundleOfProgram(const std::string& program, const std::string& home);

/// The offer, at the end of a program that runs from a disk image, to install it: copies it into the applications
/// folder if the person wants that, over a copy that is there only if he wants that too. A copy that fails leaves
/// nothing half done, and an old copy as it was. Main thread.
void handleApplicationLaunchFromDiskImage(const ProgramBundle& program, Alerts& alerts);

} // namespace sweeply
