#include "cli/CliWorld.h"
#include "cli/Person.h"

#include <functional>
#include <gmock/gmock.h>
#include <set>
#include <sys/stat.h>

namespace sweeply {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using Json = nlohmann::ordered_json;

/// A volume, a plan beside it, and what the two come to.
class CliPlanTest : public CliTest {
  protected:
    /// Where everything() does not look.
    const std::string m_plan = m_folder + "/com.brindle.Sweeply.plan";

    void takeSample() {
        fs::remove_all(m_folder + "/root");
        EXPECT_EQ(run({"sample", m_folder + "/root"}).exitStatus, 0);
    }
    Json plan(std::vector<std::string> command) {
        command.insert(command.end(), {"--plan", m_plan, "--force"});
        const auto before = everything();
        const auto result = runOnVolume(command);
        EXPECT_EQ(result.exitStatus, 0) << result.errors;
        EXPECT_TRUE(everything() == before) << "a plan changes nothing";
        EXPECT_FALSE(exists("/Users/sam/Library/Application Support/Sweeply/Runs"));
        return Json::parse(read("/../com.brindle.Sweeply.plan"));
    }
    void save(const Json& plan) { write("/../com.brindle.Sweeply.plan", plan.dump()); }
    Json apply(int status, std::vector<std::string> options = {}) {
        options.insert(options.begin(), {"apply", m_plan, "--yes", "--json"});
        return json(options, status);
    }
    /// Applying changes nothing, and says so with this status and this line.
    void expectNothing(int status, const std::string& line, const std::vector<std::string>& globals = {}) {
        auto arguments = globals;
        arguments.insert(arguments.end(), {"apply", m_plan, "--yes"});
        const auto before = everything();
        const auto result = runOnVolume(arguments);
        EXPECT_EQ(result.exitStatus, status) << line;
        EXPECT_THAT(result.errors, HasSubstr(line));
        EXPECT_TRUE(everything() == before) << line;
    }
    static Json& itemAt(Json& plan, const std::string& path, const std::string& kind = {}) {
        for (auto& item : plan["items"]) {
            if (item["path"] == path && (kind.empty() || item["kind"] == kind))
                return item;
        }
        ADD_FAILURE() << path << " is not in the plan";
        return plan["items"][0];
    }
    /// Path or its bytes, outcome and reason of each item of a run.
    static std::map<std::string, std::string> outcomes(const Json& run) {
        std::map<std::string, std::string> all;
        for (const auto& item : run["items"])
            all[item["path"]] = item["outcome"].get<std::string>() +
                                (item["reason"].is_null() ? "" : ": " + item["reason"].get<std::string>());
        return all;
    }
    void expectSchemaHolds() const {
        const auto result =
            runProcess("/usr/bin/python3",
                       {"-c",
                        "import json, sys, jsonschema\n"
                        "schema = json.load(open(sys.argv[1]))\n"
                        "jsonschema.Draft7Validator.check_schema(schema)\n"
                        "jsonschema.validate(json.load(open(sys.argv[2])), schema, jsonschema.Draft7Validator)\n",
                        SWEEPLY_PLAN_SCHEMA, m_plan});
        EXPECT_TRUE(result && result->succeeded());
    }
};

TEST_F(CliPlanTest, ApplyDoesWhatCleanWouldHaveDoneAndASecondTimeNothing) {
    takeSample();
    const auto planned = plan({"scan", "--all"});
    EXPECT_GT(planned["items"].size(), 150U);
    expectSchemaHolds();
    struct stat status {};
    ASSERT_EQ(::stat(m_plan.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);

    // Cleaned as ever, and put back.
    const auto copy = [&](const std::string& from, const std::string& to) {
        EXPECT_TRUE(runProcess("/bin/cp", {"-a", m_folder + from, m_folder + to})->succeeded());
    };
    copy("/root", "/untouched");
    auto cleaned = json({"clean", "--all", "--yes", "--json"});
    auto after = everything();
    std::erase_if(after, [](const auto& each) { return each.first.starts_with("/untouched"); });
    fs::remove_all(m_folder + "/root");
    fs::rename(m_folder + "/untouched", m_folder + "/root");

    const auto applied = apply(0);
    EXPECT_TRUE(everything() == after);
    EXPECT_EQ(applied["freed"], cleaned["freed"]);
    EXPECT_EQ(outcomes(applied), outcomes(cleaned));
    EXPECT_EQ(json({"history", "--json"})["runs"][0]["command"], "apply");

    const auto again = apply(0);
    EXPECT_TRUE(everything() == after);
    EXPECT_EQ(again["removed"], 0);
    EXPECT_EQ(again["run"], nullptr);
    for (const auto& [path, outcome] : outcomes(again))
        EXPECT_EQ(outcome, "gone") << path;
    EXPECT_EQ(json({"history", "--json"})["runs"].size(), 1U);
}

TEST_F(CliPlanTest, LooksAtNamedItemsAreRepeatedForTheSameProcessors) {
    takeSample();
    const std::vector<std::string> named{"languages", "binaries", "/Applications/Harbor Mail.app"};
    auto command = named;
    command.insert(command.begin(), "scan");
    EXPECT_EQ(plan(command)["arguments"], Json(named));
    expectNothing(2, "plan is for a Mac with intel processors, not ppc", {"--arch", "ppc"});
    const auto applied = outcomes(apply(0));
    EXPECT_GT(applied.size(), 3U);
    for (const auto& [path, outcome] : applied) {
        EXPECT_THAT(path, testing::StartsWith(named.back()));
        EXPECT_THAT(outcome, testing::AnyOf("removed", "slimmed"));
    }
}

TEST_F(CliPlanTest, NamesOfEveryKindComeBackAndOnlyWhatIsCheckedGoes) {
    const std::vector<std::string> names{"line\nend", "quo\"te'$(x)`y`", "\x1b[2J", "\xff\xfe", "b\\slash", "\u202e"};
    for (const auto& name : names)
        write(cache(name), "x");
    auto planned = plan({"scan", "user-caches"});
    expectSchemaHolds();
    ASSERT_EQ(planned["items"].size(), names.size());
    planned["items"].erase(0); // taken out
    planned["items"][0]["checked"] = false;
    planned["target"]["root"] = "/elsewhere"; // nothing to anybody
    planned["note"] = {{"approved", "by nobody"}};
    save(planned);
    EXPECT_EQ(runOnVolume({"modules", "--disable", "user-caches"}).exitStatus, 0); // it took part then
    fs::rename(m_folder + "/root", m_folder + "/mounted elsewhere");
    const auto result = run({"--root", m_folder + "/mounted elsewhere", "apply", m_plan, "--yes", "--json"});
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_EQ(Json::parse(result.output)["removed"], names.size() - 2);
    fs::rename(m_folder + "/mounted elsewhere", m_folder + "/root");
    const auto left = fs::directory_iterator(host(kCaches));
    EXPECT_EQ(std::distance(begin(left), end(left)), 2);
}

TEST_F(CliPlanTest, WhatChangedVanishedOrWasReplacedStaysAndTheRestGoes) {
    write("/../victim folder/precious", "precious");
    for (const char* name : {"stays the same", "grows", "is swapped", "vanishes", "becomes a link", "is touched"})
        write(cache(name) + "/file", "0123456789");
    write(cache("single"), "single");
    plan({"scan", "user-caches"});
    write(cache("grows") + "/more", "x");
    write(cache("is swapped") + "/file", "9876543210");
    remove(cache("vanishes"));
    remove(cache("becomes a link"));
    link(cache("becomes a link"), m_folder + "/victim folder");
    remove(cache("single"));
    link(cache("single"), "../../../../../victim folder/precious");
    fs::last_write_time(host(cache("is touched") + "/file"), fs::file_time_type::clock::now() + std::chrono::hours(1));
    const auto applied = apply(1);
    const std::string changed = "changed: has changed since the plan was made, and stays";
    EXPECT_EQ(outcomes(applied), (std::map<std::string, std::string>{{cache("stays the same"), "removed"},
                                                                     {cache("grows"), changed},
                                                                     {cache("is swapped"), changed},
                                                                     {cache("vanishes"), "gone"},
                                                                     {cache("becomes a link"), changed},
                                                                     {cache("is touched"), changed},
                                                                     {cache("single"), changed}}));
    EXPECT_EQ(read("/../victim folder/precious"), "precious");
    EXPECT_FALSE(exists(cache("stays the same")));
    EXPECT_EQ(names(kCaches).size(), 5U);
    // The record tells the same as the program did.
    EXPECT_EQ(outcomes(json({"history", applied["run"], "--json"})), outcomes(applied));
    EXPECT_THAT(runOnVolume({"apply", m_plan, "--yes"}).errors, HasSubstr("could not remove " + cache("grows")));
}

TEST_F(CliPlanTest, HandWrittenItemsRemoveNothingThatTheScanDoesNotList) {
    write("/System/Library/keep", "keep");
    write("/Users/sam/Documents/letter", "keep");
    write("/Library/Caches/of all", "keep"); // of a module that did not scan
    write(cache("mine"), "x");
    link("/way out", m_folder);
    auto planned = plan({"scan", "user-caches"});
    const auto mine = planned["items"][0];
    std::size_t count = 0;
    for (const std::string path :
         {"/System/Library/keep", "/System", "/", "../../victim", "/../victim", "/way out/victim", "victim", ".",
          "/Users/sam/Documents/letter", "/Users/sam/Library/Caches", "/Library/Caches/of all",
          "/Users/sam/Library/Caches/../../Documents/letter", "/Users/sam/Library/Caches/mine/", "~/Documents"}) {
        for (const char* module : {"user-caches", "system-logs", "photo-caches", "binaries", "uninstaller", "eraser"}) {
            for (const char* kind : {"folder", "log", "slices", "launch-item", "receipt"}) {
                auto item = mine;
                item.update({{"path", path}, {"module", module}, {"kind", kind}});
                planned["items"].push_back(item);
                ++count;
            }
        }
    }
    planned["items"].push_back(mine);
    planned["items"].back()["path"] = {{"hex", "2f76696374696dff"}};
    planned["items"].push_back(planned["items"].back());
    planned["items"].back()["path"] = m_folder + "/victim";
    save(planned);
    const auto before = everything();
    const auto applied = apply(1);
    EXPECT_EQ(applied["removed"], 1) << "the one that was found";
    EXPECT_EQ(applied["items"].size(), count + 3);
    auto expected = before;
    expected.erase("/root" + cache("mine"));
    EXPECT_TRUE(everything() == expected);
    planned["items"][1]["module"] = "no-such";
    save(planned);
    expectNothing(2, "com.brindle.Sweeply.plan: the plan names a module that there is not: no-such");
}

TEST_F(CliPlanTest, PlansForOthersAndWhatIsNoPlanEndBeforeAnything) {
    write(cache("item"), "x");
    write("/Users/ann/Library/Caches/item", "x");
    makeFolder("/Users/ann/Library/Preferences");
    const auto globals = std::vector<std::string>{"-u", "sam"};
    plan({"-u", "sam", "scan", "user-caches"});
    const auto good = read("/../com.brindle.Sweeply.plan");
    expectNothing(2, "plan is for the files of the user sam, not of ann", {"-u", "ann"});
    expectNothing(2, "plan is for Mac OS X 10.6.8, not for 10.5.8", {"-u", "sam", "--os", "10.5.8"});
    for (const auto& [bytes, line] : std::map<std::string, std::string>{
             {"", "com.brindle.Sweeply.plan: no plan: byte 1"},
             {good.substr(0, 500), "cut short"},
             {R"({"format": "sweeply-plan-7"})", "another version (sweeply-plan-7)"},
             {Json::parse(good)
                  .patch(Json::parse(R"([{"op": "add", "path": "/arguments/0", "value": "no-such"}])"))
                  .dump(),
              "no-such: no such module"}}) {
        write("/../com.brindle.Sweeply.plan", bytes);
        expectNothing(2, line, globals);
    }
    fs::resize_file(m_plan, std::uintmax_t{1} << 40U);
    expectNothing(2, "com.brindle.Sweeply.plan: is too large", globals);
    fs::remove(m_plan);
    expectNothing(2, "com.brindle.Sweeply.plan: No such file", globals);
    fs::create_directory(m_plan);
    expectNothing(2, "com.brindle.Sweeply.plan: Is a directory", globals);
}

TEST_F(CliPlanTest, PlansAreWrittenOverNothingUnlessForced) {
    write(cache("item"), "x");
    write("/../com.brindle.Sweeply.plan", "mine");
    const auto refused = runOnVolume({"scan", "--plan", m_plan});
    EXPECT_EQ(refused.exitStatus, 2);
    EXPECT_THAT(refused.errors, HasSubstr("File exists; --force writes over it"));
    EXPECT_EQ(read("/../com.brindle.Sweeply.plan"), "mine");
    EXPECT_EQ(runOnVolume({"scan", "--plan", m_folder + "/none/plan"}).exitStatus, 2);
    EXPECT_EQ(plan({"scan"})["items"].size(), 1U) << "forced";
    // A link is neither replaced nor written through: it may be the system's own.
    fs::remove(m_plan);
    fs::create_symlink(m_folder + "/victim", m_plan);
    for (const auto& force : {std::vector<std::string>{}, {"--force"}}) {
        auto arguments = force;
        arguments.insert(arguments.begin(), {"scan", "--plan", m_plan});
        EXPECT_NE(runOnVolume(arguments).exitStatus, 0);
    }
    EXPECT_TRUE(fs::is_symlink(m_plan));
    // To standard output, alone.
    EXPECT_EQ(Json::parse(runOnVolume({"scan", "--plan", "-"}).output)["items"].size(), 1U);
    for (const auto& wrong : {std::vector<std::string>{"scan", "--plan", "-", "--json"},
                              {"scan", "--force"},
                              {"uninstall", "--plan", m_plan, "--yes", "/a"},
                              {"uninstall", "--plan", m_plan, "--keep", "/a"},
                              {"apply", m_plan}})
        EXPECT_EQ(runOnVolume(wrong).exitStatus, 2) << wrong.back();
    EXPECT_TRUE(exists(cache("item")));
}

TEST_F(CliPlanTest, OwnChecksCountLikeClicksAndNewClaimsDoNot) {
    const auto makeApplication = [&](const std::string& name, const std::string& identifier) {
        write("/Applications/" + name + ".app/Contents/Info.plist",
              "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>" + identifier +
                  "</string><key>CFBundleName</key><string>" + name + "</string></dict></plist>");
    };
    const std::string weak = "/Users/sam/Library/Application Support/My Notes";
    const std::string claimed = "/Users/sam/Library/Preferences/com.acme.notespro.plist";
    const std::string support = "/Users/sam/Library/Application Support/Notes";
    makeFolder(weak);
    makeFolder(support);
    write(claimed, "x");
    makeApplication("Notes", "com.acme.notes");
    makeApplication("Notes Pro", "com.acme.notespro");
    auto planned = plan({"uninstall", "/Applications/Notes.app"});
    expectSchemaHolds();
    for (const auto& path : {weak, claimed}) {
        EXPECT_EQ(itemAt(planned, path)["checked"], false);
        itemAt(planned, path)["checked"] = true;
    }
    save(planned);
    makeApplication("Copy/Notes", "com.acme.notes"); // it needs what is there as well
    const auto applied = outcomes(apply(1));
    EXPECT_EQ(applied.at("/Applications/Notes.app"), "removed");
    for (const auto& path : {weak, claimed, support})
        EXPECT_EQ(applied.at(path), "changed: stays: /Applications/Copy/Notes.app claims it since the plan was made");
    remove("/Applications/Copy");
    EXPECT_EQ(outcomes(apply(1)).at(support), "refused: no longer found") << "the application is gone";
    makeApplication("Notes", "com.acme.notes");
    const auto later = outcomes(apply(1));
    for (const auto& path : {weak, claimed, support})
        EXPECT_EQ(later.at(path), "removed");

    write(cache("ignored"), "x");
    EXPECT_EQ(runOnVolume({"ignore", "add", cache("ignored")}).exitStatus, 0);
    auto scanned = Json::parse(runOnVolume({"scan", "user-caches", "--plan", "-"}).output);
    EXPECT_EQ(scanned["items"][0]["checked"], false);
    scanned["items"][0]["checked"] = true;
    save(scanned);
    EXPECT_EQ(apply(0)["removed"], 1);
}

TEST_F(CliPlanTest, UninstallationsAreAppliedAndKeptLikeAnyOther) {
    takeSample();
    auto planned = plan({"uninstall", "/Applications/Harbor Mail.app", "/Applications/Ledger.app"});
    expectSchemaHolds();
    std::set<std::string> kinds;
    for (const auto& item : planned["items"])
        kinds.insert(item["kind"]);
    EXPECT_THAT(kinds, testing::IsSupersetOf({"file", "folder", "launch-item", "login-item", "receipt"}));
    const auto before = everything();
    const auto applied = apply(0, {"--keep"});
    EXPECT_GT(applied["kept"], 10);
    EXPECT_EQ(applied["removed"], 0);
    EXPECT_FALSE(exists("/Applications/Ledger.app"));
    for (const auto& [path, outcome] : outcomes(apply(0)))
        EXPECT_EQ(outcome, "gone") << path;
    EXPECT_EQ(runOnVolume({"undo"}).exitStatus, 0);
    EXPECT_TRUE(everything() == before);
    // One item alone, of two with the same path.
    for (auto& item : planned["items"])
        item["checked"] = item["kind"] == "login-item";
    save(planned);
    const auto alone = apply(0);
    EXPECT_GT(alone["removed"], 0);
    for (const auto& item : alone["items"])
        EXPECT_EQ(item["outcome"], "taken-off");
    EXPECT_TRUE(exists("/Applications/Ledger.app"));
}

TEST_F(CliPlanTest, WithoutYesItShowsAndAsks) {
    write(cache("going"), "x");
    write(cache("staying"), "x");
    auto planned = plan({"scan", "user-caches"});
    itemAt(planned, cache("staying"))["checked"] = false;
    save(planned);
    for (const char* answer : {"n\n", "y\n"}) {
        Person person({"--root", host(""), "apply", m_plan}, {{"HOME", m_folder}});
        ASSERT_TRUE(person.sees("Remove the checked items?")) << person.seen();
        EXPECT_THAT(person.seen(), testing::AllOf(HasSubstr("[x] going"), HasSubstr("[ ] staying")));
        person.types(answer);
        EXPECT_EQ(person.endsWith(), *answer == 'y' ? 0 : 1);
        EXPECT_EQ(exists(cache("going")), *answer != 'y');
    }
    EXPECT_TRUE(exists(cache("staying")));
}

} // namespace
} // namespace sweeply
