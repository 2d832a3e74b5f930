#include "cli/sample/SampleParts.h"
#include "cli/sample/SampleWriter.h"

#include <string>

namespace sweeply::sample {

namespace {

// Noon on 1 July 2011: long ago by any measure, which is what makes a leftover one.
constexpr std::time_t kLongAgo = 1309521600;

enum class Age { Old, New };

struct Preference {
    std::string_view file; ///< in the user's preferences folder, without ".plist"
    PropertyListForm form;
    Age age = Age::Old;
};

constexpr Preference kPreferences[] = {
    {"com.apple.Safari", PropertyListForm::Binary},
    {"com.apple.dock", PropertyListForm::Binary, Age::New},
    {"com.apple.finder", PropertyListForm::Binary},
    {"com.apple.iPhoto", PropertyListForm::Binary},
    {"com.harborline.mail", PropertyListForm::Binary},
    {"com.harborline.mail.helper", PropertyListForm::Xml}, // as a launch daemon's list is called
    {"com.northbay.ledger", PropertyListForm::Xml},
    {"com.northbay.ledger.LSSharedFileList", PropertyListForm::Binary},
    {"com.tidewater.papertrail", PropertyListForm::Binary, Age::New},
    {"Paper Trail Preferences", PropertyListForm::Xml},
    {"org.example.QuickNotesHelper", PropertyListForm::Xml},
    // Of applications that are gone: one was changed just now, which protects it.
    {"com.gonefishing.bait", PropertyListForm::Binary},
    {"com.driftwood.raft", PropertyListForm::Xml},
    {"com.driftwood.raft.recent", PropertyListForm::Xml, Age::New},
    {"Flotsam", PropertyListForm::Xml},
    {"ByHost/com.driftwood.raft.001b63aa10ff", PropertyListForm::Binary},
    {"ByHost/com.apple.screensaver.001b63aa10ff", PropertyListForm::Binary},
    // Of widgets, the first of them installed.
    {"widget-com.tidewater.widget.tides", PropertyListForm::Binary},
    {"widget-com.lostcorp.widget.clouds", PropertyListForm::Binary},
    {"widget-com.lostcorp.widget.moon", PropertyListForm::Xml},
};

plist::Value loginItem(const char* path, plist::Value hide) {
    return dictionary({{"Hide", std::move(hide)}, {"Path", path}});
}

} // namespace

void writePreferences(SampleWriter& out) {
    const std::string folder = std::string(kHome) + "/Library/Preferences/";
    for (const auto& [name, form, age] : kPreferences) {
        const std::string path = folder + std::string(name) + ".plist";
        out.propertyList(path, dictionary({{"NSWindow Frame main", "120 80 640 480 0 0 1440 878 "}, {"Launches", 17}}),
                         form);
        if (age == Age::Old)
            out.setModified(path, kLongAgo);
    }
    out.propertyList(
        folder + ".GlobalPreferences.plist",
        dictionary({{"AppleLanguages", plist::Array{"en", "de"}}, {"AppleLocale", "en_US"}, {"Country", "US"}}),
        PropertyListForm::Binary);
    out.propertyList(folder + "loginwindow.plist",
                     dictionary({{"AutoLaunchedApplicationDictionary",
                                  plist::Array{loginItem("/Applications/Harbor Mail.app", true),
                                               loginItem("/Applications/Gone Fishing.app", false),
                                               loginItem("/Applications/Weather Vane.app", 0),
                                               loginItem("/Volumes/Install Disc/Raft.app", "1")}},
                                 {"BuildVersionStampAsString", "10K549"}}));
    out.file(folder + "com.northbay.ledger.plist.lockfile", "");
    out.file(folder + "com.tidewater.damaged.plist", "bplist00\xd1\x01");
    out.setModified(folder + "com.tidewater.damaged.plist", kLongAgo);

    out.propertyList("/Library/Preferences/com.apple.loginwindow.plist", dictionary({{"lastUserName", "sam"}}),
                     PropertyListForm::Binary);
    out.propertyList("/Library/Preferences/com.northbay.ledger.plist", dictionary({{"License", "SAMPLE-0001"}}));
    out.propertyList("/Library/Preferences/SystemConfiguration/preferences.plist",
                     dictionary({{"Model", "MacBook5,1"}, {"System", dictionary({{"HostName", "sams-macbook"}})}}));
    out.propertyList(std::string(kHome) + "/Library/Cookies/Cookies.plist",
                     plist::Array{dictionary({{"Domain", ".example.com"},
                                              {"Expires", plist::Date{400000000}},
                                              {"Name", "session"},
                                              {"Path", "/"},
                                              {"Value", "6f1d"}})});
}

} // namespace sweeply::sample
