#include "engine/record/ChangeRuns.h"

#include "appcore/ADTaskRunner.h"
#include "appcore/FolderConstants.h"
#include "appcore/LoginItems.h"
#include "appcore/processes/LaunchItems.h"
#include "appcore/receipts/PackageManager.h"
#include "appcore/sizes/DiskSizes.h"
#include "engine/CoordinatorPreferences.h"
#include "engine/TestWorld.h"

#include <cstring>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>

namespace sweeply {
namespace {

namespace fs = std::filesystem;
using namespace testing;

const std::string kHome = "/Users/sam";
const std::string kLoginList = kHome + "/Library/Preferences/loginwindow.plist";
const std::string kDatabase = "/private/var/db/receipts/";

/// A volume with one item of each kind that can be kept, and programs that run on it one after another.
class ChangeRunsTest : public testing::Test {
  protected:
    ChangeRunsTest() { makeVolume(); }
    ~ChangeRunsTest() override { m_world.reset(); }

    void makeVolume() {
        m_world = std::make_unique<TestWorld>();
        for (const auto& tree : {runs().keptFolder(), runs().runsFolder()})
            m_world->files().removals().guard().protectTree(tree);
        auto& target = m_world->target;
        target.makeFile("/Applications/A.app/Contents/MacOS/A", std::string(5000, 'x'));
        target.makeFile("/Applications/A.app/\xff odd\n\"name", "odd");
        target.makeLink("/Applications/A.app/link", "/nowhere");
        target.makeFile(kHome + "/Library/Preferences/org.a.plist", "preferences");
        target.makeFile(kHome + "/Library/Preferences/._org.a.plist", std::string("\0\5\26\7 companion", 14));
        target.makeLink(kHome + "/Library/Caches/link", "/Applications");
        target.makeFile(kHome + "/Library/LaunchAgents/org.a.agent.plist", "launch");
        target.makeFile(kDatabase + "org.a.pkg.plist", "receipt");
        target.makeFile(kDatabase + "org.a.pkg.bom", "bill");
        target.makeLink("/var", "private/var");
        plist::Array items;
        for (const char* path : {"/Applications/Other.app", "/Applications/A.app", "/Applications/Last.app"})
            items.emplace_back(plist::Dictionary({{"Path", path}, {"Hide", true}}));
        target.makeFile(kLoginList, plist::writeXml(plist::Dictionary(
                                        {{"AutoLaunchedApplicationDictionary", items}, {"Other", 1}})));
        fs::permissions(host("/Applications/A.app/Contents"), fs::perms(0711));
        fs::last_write_time(host("/Applications/A.app/Contents"),
                            fs::file_time_type::clock::now() - std::chrono::hours(9));
        ::setxattr(host("/Applications/A.app").c_str(), "user.note", "remembered", 10, 0);
        m_original = volume();
    }
    std::string host(const std::string& path) const { return m_world->target.root() + path; }
    ChangeRuns& runs() { return *m_world->runs; }
    ChangeGate& gate() { return m_world->gate; }

    /// What an uninstaller would take.
    std::vector<ChangeRequest> requests() {
        std::vector<ChangeRequest> all;
        const std::pair<const char*, ChangedKind> items[] = {
            {"/Applications/A.app", ChangedKind::Folder},
            {"/Users/sam/Library/Preferences/org.a.plist", ChangedKind::File},
            {"/Users/sam/Library/Caches/link", ChangedKind::Link},
            {"/Users/sam/Library/LaunchAgents/org.a.agent.plist", ChangedKind::LaunchItem},
            {"/Applications/A.app", ChangedKind::LoginItem},
            {"org.a.pkg", ChangedKind::Receipt}};
        for (const auto& [path, kind] : items) {
            ChangeRequest request{Operation::Keep, path, kind};
            request.module = "uninstaller";
            if (kind < ChangedKind::LoginItem) {
                const auto item = m_world->sizes.measure(path);
                request.seen = item.identity;
                request.size = item.size;
            }
            all.push_back(std::move(request));
        }
        return all;
    }
    /// An uninstallation that keeps everything. False when it could not begin.
    bool keepAll() {
        runs().setKeeping(Keeping::On);
        if (!runs().begin("uninstall"))
            return false;
        for (const auto& request : requests())
            gate().perform(request);
        runs().finish();
        return true;
    }
    std::vector<std::string> undoAll() {
        std::vector<std::string> outcomes;
        for (const auto& record : runs().records()) {
            const auto undone = runs().undo(record.header.run, {});
            for (const auto& item : undone.value())
                outcomes.push_back(item.outcome);
        }
        return outcomes;
    }

    using Volume = std::map<std::string, std::string>;
    /// Everything below a folder, with its attributes and contents. Times are those of what can be kept: the folders
    /// around change when something is taken out of them.
    Volume entriesBelow(const std::string& folder, bool hasTimes) const {
        Volume entries;
        const auto add = [&](const fs::path& path) {
            struct stat status {};
            if (::lstat(path.c_str(), &status) != 0)
                return;
            std::string text = std::to_string(status.st_mode) + " " + std::to_string(status.st_uid);
            if (hasTimes)
                text += " " + std::to_string(status.st_mtim.tv_sec) + "." + std::to_string(status.st_mtim.tv_nsec);
            char note[64];
            const auto length = ::lgetxattr(path.c_str(), "user.note", note, sizeof note);
            text += " " + std::string(note, static_cast<std::size_t>(std::max<ssize_t>(length, 0))) + " ";
            if (S_ISLNK(status.st_mode))
                text += fs::read_symlink(path).string();
            else if (S_ISREG(status.st_mode))
                text += std::string(std::istreambuf_iterator<char>(std::ifstream(path, std::ios::binary).rdbuf()), {});
            entries[path.string().substr(folder.size())] = text;
        };
        add(folder);
        if (fs::is_directory(fs::symlink_status(folder))) {
            for (const auto& entry : fs::recursive_directory_iterator(folder))
                add(entry.path());
        }
        return entries;
    }
    Volume volume() const {
        auto all = entriesBelow(host(""), false);
        std::erase_if(all, [](const auto& entry) {
            return entry.first.find("Sweeply") != std::string::npos || entry.first.ends_with(".lockfile") ||
                   entry.first.find(".sweeply-") != std::string::npos ||
                   entry.first == kHome + "/Library/Application Support";
        });
        return all;
    }
    /// What is not as it was.
    std::string differences() const {
        std::string text;
        const auto now = volume();
        for (const auto& [path, entry] : m_original) {
            const auto same = now.find(path);
            if (same == now.end() || same->second != entry)
                text += path + ": " + (same == now.end() ? "missing" : same->second) + ", was " + entry + "\n";
        }
        for (const auto& [path, entry] : now)
            text += m_original.contains(path) ? "" : path + ": new\n";
        return text;
    }
    /// Where an item is, and nowhere else, whole: "place", "kept", or what is wrong.
    std::string whereIs(const std::string& path, const Volume& whole) {
        std::vector<std::string> kept;
        constexpr int kDepth = 2; // "RUN/NUMBER/NAME"
        if (fs::exists(host(runs().keptFolder()))) {
            for (auto entry = fs::recursive_directory_iterator(host(runs().keptFolder())); entry != fs::end(entry);
                 ++entry) {
                if (entry.depth() == kDepth && entry->path().filename() == fs::path(path).filename())
                    kept.push_back(entry->path());
            }
        }
        const bool isInPlace = fs::exists(fs::symlink_status(host(path)));
        if (isInPlace == (kept.size() == 1) || kept.size() > 1)
            return isInPlace ? "in both places" : "nowhere";
        if (entriesBelow(isInPlace ? host(path) : kept.front(), true) != whole)
            return "not whole";
        return isInPlace ? "place" : "kept";
    }
    /// Looks at every item as another program finds them, and has them put back.
    void expectNothingIsLost(const std::map<std::string, Volume>& whole) {
        m_world->restart();
        std::set<std::string> kept;
        for (const auto& entry : runs().kept())
            kept.insert(entry.item.kind == ChangedKind::LoginItem ? "login" : entry.item.path);
        for (const auto& [path, entries] : whole) {
            const auto where = whereIs(path, entries);
            EXPECT_EQ(where, kept.contains(path) ? "kept" : "place") << path;
        }
        EXPECT_EQ(m_world->loginItems.isListed("/Applications/A.app"), !kept.contains("login"));
        for (const auto& outcome : undoAll())
            EXPECT_EQ(outcome, "restored");
        EXPECT_THAT(runs().kept(), IsEmpty());
        EXPECT_EQ(differences(), "");
    }
    /// The items, as they are in their places now.
    std::map<std::string, Volume> wholeItems() {
        std::map<std::string, Volume> whole;
        for (const auto& request : requests()) {
            if (request.kind < ChangedKind::LoginItem)
                whole[request.path] = entriesBelow(host(request.path), true);
        }
        return whole;
    }
    int callsOf(const std::function<void()>& work) {
        int count = 0;
        m_world->target.calls.whenCalled = [&](const char*) { return ++count, 0; };
        work();
        m_world->target.calls.whenCalled = {};
        return count;
    }
    /// Does the work in a process that ends right before that call.
    void dieBefore(int call, const std::function<void()>& work) {
        const pid_t child = ::fork();
        if (child == 0) {
            int count = 0;
            m_world->target.calls.whenCalled = [&](const char*) {
                if (++count == call)
                    ::_exit(9);
                return 0;
            };
            work();
            ::_exit(0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_EQ(WEXITSTATUS(status), 9) << call;
    }
    void failAt(int call, int error, const std::function<void()>& work) {
        int count = 0;
        m_world->target.calls.whenCalled = [&](const char*) { return ++count == call ? error : 0; };
        work();
        m_world->target.calls.whenCalled = {};
    }

    std::unique_ptr<TestWorld> m_world;
    Volume m_original;
};

constexpr int kErrors[] = {EIO, ENOSPC, EACCES, EXDEV};

TEST_F(ChangeRunsTest, WhatIsKeptIsListedAndComesBackByteForByte) {
    ASSERT_TRUE(keepAll());
    EXPECT_EQ(gate().sums().kept, 6U);
    EXPECT_EQ(gate().sums().freed, 0U);
    const auto record = runs().records().at(0);
    EXPECT_THAT(record.items, SizeIs(6));
    EXPECT_EQ(runs().stateOf(record), "done");
    EXPECT_FALSE(fs::exists(host("/Applications/A.app")));
    EXPECT_FALSE(fs::exists(host(kHome + "/Library/Preferences/._org.a.plist")));
    EXPECT_FALSE(m_world->loginItems.isListed("/Applications/A.app"));
    struct stat status {};
    ASSERT_EQ(::stat(host(runs().keptFolder()).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700U);
    EXPECT_THAT(runs().kept(), SizeIs(6));

    fs::remove_all(host(kHome + "/Library/LaunchAgents")); // is made again as it was
    EXPECT_THAT(undoAll(), SizeIs(6));
    EXPECT_EQ(differences(), "");
    EXPECT_EQ(runs().stateOf(runs().record(record.header.run).value()), "undone");
    EXPECT_THAT(undoAll(), IsEmpty()) << "undoing twice changes nothing";
}

TEST_F(ChangeRunsTest, KilledAtAnyStepOfKeepingEveryItemIsInPlaceOrKept) {
    const int calls = callsOf([&] { keepAll(); });
    ASSERT_GT(calls, 30);
    for (int call = 1; call <= calls; ++call) {
        SCOPED_TRACE(call);
        makeVolume();
        const auto whole = wholeItems();
        dieBefore(call, [&] { keepAll(); });
        expectNothingIsLost(whole);
    }
}

TEST_F(ChangeRunsTest, KilledAtAnyStepOfUndoingEveryItemIsInPlaceOrKept) {
    keepAll();
    const int calls = callsOf([&] { undoAll(); });
    ASSERT_GT(calls, 20);
    for (int call = 1; call <= calls; ++call) {
        SCOPED_TRACE(call);
        makeVolume();
        const auto whole = wholeItems();
        keepAll();
        dieBefore(call, [&] { undoAll(); });
        expectNothingIsLost(whole);
    }
}

TEST_F(ChangeRunsTest, WhateverCallFailsNothingIsLostAndNothingClaimed) {
    const int calls = callsOf([&] { keepAll(); });
    for (const int error : kErrors) {
        for (int call = 1; call <= calls; ++call) {
            SCOPED_TRACE(std::to_string(call) + ": " + std::strerror(error));
            makeVolume();
            const auto whole = wholeItems();
            failAt(call, error, [&] { keepAll(); });
            for (const auto& report : gate().reports()) {
                if (report.kind < ChangedKind::LoginItem) {
                    EXPECT_EQ(whereIs(report.path, whole.at(report.path)), report.outcome.isDone() ? "kept" : "place")
                        << report.path;
                }
                EXPECT_NE(report.outcome.isDone(), !report.outcome.error.reason.empty());
            }
            expectNothingIsLost(whole);
        }
    }
}

TEST_F(ChangeRunsTest, WhateverCallOfAnUndoFailsNothingIsLostAndNothingClaimed) {
    keepAll();
    const int calls = callsOf([&] { undoAll(); });
    for (const int error : kErrors) {
        for (int call = 1; call <= calls; ++call) {
            SCOPED_TRACE(std::to_string(call) + ": " + std::strerror(error));
            makeVolume();
            const auto whole = wholeItems();
            keepAll();
            const auto run = *runs().run();
            failAt(call, error, [&] {
                const auto undone = runs().undo(run, {});
                if (!undone)
                    return;
                for (const auto& item : *undone) {
                    if (whole.contains(item.path) && item.path != "/Applications/A.app") { // a login item's, too
                        EXPECT_EQ(whereIs(item.path, whole.at(item.path)),
                                  item.outcome == "restored" ? "place" : "kept");
                    }
                    EXPECT_EQ(item.reason.has_value(), item.outcome != "restored");
                }
            });
            expectNothingIsLost(whole);
        }
    }
}

TEST_F(ChangeRunsTest, UndoPutsNothingOverWhatStandsThere) {
    keepAll();
    const auto run = *runs().run();
    m_world->target.makeFile("/Applications/A.app", "new");
    const auto undone = runs().undo(run, {"/Applications/A.app"}).value();
    EXPECT_THAT(undone, Contains(testing::Field(&UndoneItem::outcome, "occupied")));
    EXPECT_EQ(m_world->files().contentsAtPath("/Applications/A.app", 9).value(), "new");
    EXPECT_EQ(runs().stateOf(runs().record(run).value()), "partly undone") << "the login item is back";
    fs::remove(host("/Applications/A.app"));
    fs::remove_all(host(runs().keptFolder() + "/" + run + "/2"));
    std::vector<std::string> outcomes;
    const auto rest = runs().undo(run, {});
    for (const auto& item : rest.value())
        outcomes.push_back(item.path + " " + item.outcome);
    EXPECT_THAT(outcomes, Contains("/Applications/A.app restored"));
    EXPECT_THAT(outcomes, Contains(kHome + "/Library/Preferences/org.a.plist missing"));
}

TEST_F(ChangeRunsTest, ExpiredItemsArePurgedBeforeTheNextRunAndCountAsFreed) {
    keepAll();
    const auto kept = *runs().run();
    const auto size = gate().sums().keptSize;
    ASSERT_GT(size, 5000U);
    EXPECT_THAT(runs().expired(), IsEmpty());
    TestWorld::now += 31 * 24 * 60 * 60;
    const auto before = m_world->statistics->numberTotalSizeSaved();
    ASSERT_TRUE(runs().begin("clean"));
    runs().finish();
    TestWorld::now -= 31 * 24 * 60 * 60;
    EXPECT_FALSE(runs().run()) << "a run that changes nothing has no record";
    EXPECT_THAT(runs().kept(), IsEmpty());
    EXPECT_TRUE(fs::is_empty(host(runs().keptFolder() + "/" + kept)));
    EXPECT_EQ(m_world->statistics->numberTotalSizeSaved(), before + size);
    ASSERT_THAT(runs().records(), SizeIs(2));
    for (const auto& record : runs().records()) {
        if (record.header.command == "purge") {
            EXPECT_EQ(record.sums.freed, size);
        }
    }
    EXPECT_THAT(undoAll(), IsEmpty());
    EXPECT_FALSE(fs::exists(host("/Applications/A.app")));
}

TEST_F(ChangeRunsTest, PurgeThatFailsIsPurgedAgainAndNeverPutBack) {
    keepAll();
    const auto run = *runs().run();
    const auto total = gate().sums().keptSize;
    m_world->target.calls.whenCalled = [](const char* call) { return std::string_view(call) == "unlinkat" ? EIO : 0; };
    EXPECT_THAT(runs().purge(runs().kept()).value(), Contains(Field(&RecordedItem::outcome, "failed")));
    m_world->target.calls.whenCalled = {};
    const auto left = runs().kept();
    ASSERT_THAT(left, Not(IsEmpty())) << "it still takes space";
    const auto undone = runs().undo(run, {});
    EXPECT_THAT(undone.value(), Each(Field(&UndoneItem::outcome, "missing")));
    std::uint64_t freed = m_world->statistics->numberTotalSizeSaved();
    EXPECT_THAT(runs().purge(left).value(), Each(Field(&RecordedItem::outcome, "removed")));
    EXPECT_EQ(m_world->statistics->numberTotalSizeSaved(), total);
    EXPECT_LT(freed, total);
    EXPECT_THAT(runs().kept(), IsEmpty());
    EXPECT_THAT(runs().undo(run, {}).value(), IsEmpty());
}

TEST_F(ChangeRunsTest, RunsOfOneUserDoNotMix) {
    ASSERT_TRUE(runs().begin("clean"));
    ChangeRuns other({m_world->files(), m_world->folders, gate(), *m_world->defaults, *m_world->notifications,
                      m_world->log, "1.0", "/", [] { return TestWorld::now; }});
    const auto refused = other.begin("uninstall");
    ASSERT_FALSE(refused);
    EXPECT_THAT(refused.error().message(), HasSubstr("another Sweeply is changing this user's files"));
    EXPECT_FALSE(other.undo("20261124T050000Z-abcd", {}));
    runs().finish();
    EXPECT_TRUE(other.begin("uninstall"));
    other.finish();
}

TEST_F(ChangeRunsTest, RecordsThatCannotBeReadArePassedOverAndStay) {
    keepAll();
    const auto own = *runs().run();
    const auto file = [&](const std::string& run) { return runs().runsFolder() + "/" + run + ".jsonl"; };
    auto text = m_world->files().contentsAtPath(file(own), 1 << 20).value();
    const std::map<std::string, std::string> damaged{
        {"20200101T000000Z-aaaa", ""},
        {"20200101T000000Z-bbbb", "{\"format\":\"sweeply-run-2\"}\n"},
        {"20200101T000000Z-cccc", "{\"format\":[]}\n"},
        {"20200101T000000Z-dddd", text.substr(0, text.find('\n') + 1) + "{\"keep\":7}\n"},
        {"20200101T000000Z-eeee", std::string(5000, '\xff') + "\n"}};
    for (const auto& [run, contents] : damaged)
        m_world->target.makeFile(file(run), contents);
    std::vector<std::string> problems;
    runs().setReport([&](const Error& error) { problems.push_back(error.message()); });
    EXPECT_THAT(runs().records(), SizeIs(1));
    EXPECT_THAT(problems, SizeIs(5));
    EXPECT_THAT(problems, Contains(HasSubstr("aaaa.jsonl: no record of a run: it is empty")));
    EXPECT_THAT(problems, Contains(HasSubstr("bbbb.jsonl: the record of a newer program")));
    EXPECT_EQ(runs().undo("20200101T000000Z-bbbb", {}).error().kind, ErrorKind::Unavailable);
    EXPECT_EQ(runs().undo("../../../etc/passwd", {}).error().kind, ErrorKind::NotFound);

    const std::string foreign = "20200101T000000Z-ffff";
    text.replace(text.find("\"user\":\"sam\""), 12, "\"user\":\"eve\"");
    text.replace(text.find(own), own.size(), foreign);
    m_world->target.makeFile(file(foreign), text);
    EXPECT_THAT(runs().undo(foreign, {}).error().message(), HasSubstr("is a run of another user, eve"));

    fs::remove(host(file(foreign)));

    // A line cut short tells of nothing that happened, and is no damage.
    m_world->target.makeFile(file(own), m_world->files().contentsAtPath(file(own), 1 << 20).value() + "{\"item\":");
    EXPECT_THAT(undoAll(), SizeIs(6));
    EXPECT_EQ(differences(), "");
    for (const auto& [run, contents] : damaged)
        EXPECT_EQ(m_world->files().contentsAtPath(file(run), 1 << 20).value(), contents);
}

TEST_F(ChangeRunsTest, OnlyTheNewestHundredRecordsStayButWhatIsKeptStaysToBeUndone) {
    keepAll();
    const auto kept = *runs().run();
    const auto folder = runs().runsFolder() + "/";
    const auto text = m_world->files().contentsAtPath(folder + kept + ".jsonl", 1 << 20).value();
    const auto header = text.substr(0, text.find('\n') + 1);
    for (int i = 0; i < 120; ++i) {
        const auto run = "29991231T235959Z-" + std::to_string(1000 + i);
        auto line = header;
        m_world->target.makeFile(folder + run + ".jsonl", line.replace(line.find(kept), kept.size(), run));
    }
    ASSERT_TRUE(runs().begin("clean"));
    gate().perform({Operation::Remove, kHome + "/Library/Caches/none"});
    runs().finish();
    EXPECT_THAT(runs().records(), SizeIs(101)) << "that of the run that kept something is older";
    EXPECT_THAT(runs().kept(), SizeIs(6));
}

TEST_F(ChangeRunsTest, AFullDiskStopsARunBeforeTheChange) {
    m_world->target.calls.whenCalled = [](const char* call) { return call == std::string("fallocate") ? ENOSPC : 0; };
    bool isStopped = false;
    gate().setStop([&] { isStopped = true; });
    ASSERT_TRUE(runs().begin("clean"));
    const auto outcome = gate().perform({Operation::Remove, "/Applications/A.app"});
    runs().finish();
    EXPECT_EQ(outcome.kind, OutcomeKind::Failed);
    EXPECT_THAT(outcome.error.reason, HasSubstr("cannot write down what is removed"));
    EXPECT_TRUE(isStopped);
    EXPECT_EQ(differences(), "");
}

} // namespace
} // namespace sweeply
