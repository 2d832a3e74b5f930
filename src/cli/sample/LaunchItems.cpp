#include "cli/sample/SampleBundles.h"
#include "cli/sample/SampleParts.h"

namespace sweeply::sample {

namespace {

/// The program of a launch item stands under "Program", or at the head of "ProgramArguments" with an argument after it.
enum class ProgramKey { Program, ProgramArguments };

struct LaunchItem {
    std::string_view folder;
    std::string_view label;
    std::string_view program;
    ProgramKey key;
};

constexpr LaunchItem kLaunchItems[] = {
    {"/Library/LaunchDaemons", "com.harborline.mail.helper",
     "/Library/PrivilegedHelperTools/com.harborline.mail.helper", ProgramKey::Program},
    {"/Library/LaunchDaemons", "com.gonefishing.castd", "/Library/Application Support/Gone Fishing/castd",
     ProgramKey::ProgramArguments},
    {"/Library/LaunchAgents", "com.northbay.ledger.agent", "/Applications/Ledger.app/Contents/MacOS/Ledger",
     ProgramKey::ProgramArguments},
    {"/Library/LaunchAgents", "org.example.shell", "/bin/ls", ProgramKey::ProgramArguments},
    {"/Users/sam/Library/LaunchAgents", "com.tidewater.papertrail.sync",
     "/Applications/Paper Trail.app/Contents/MacOS/Paper Trail", ProgramKey::Program},
    {"/Users/sam/Library/LaunchAgents", "com.driftwood.float", "/Applications/Raft.app/Contents/MacOS/float",
     ProgramKey::Program},
};

} // namespace

void writeLaunchItems(SampleWriter& out) {
    for (const LaunchItem& item : kLaunchItems) {
        plist::Dictionary list;
        list.set("Label", item.label);
        if (item.key == ProgramKey::Program)
            list.set("Program", item.program);
        else
            list.set("ProgramArguments", plist::Array{item.program, "--background"});
        list.set("RunAtLoad", true);
        out.propertyList(std::string(item.folder) + "/" + std::string(item.label) + ".plist", list);
    }
    writeProgram(out, "/Library/PrivilegedHelperTools/com.harborline.mail.helper", Slices::Intel, 8000);
    out.file(std::string(kHome) + "/Library/LaunchAgents/com.driftwood.damaged.plist", "bplist00");
}

} // namespace sweeply::sample
