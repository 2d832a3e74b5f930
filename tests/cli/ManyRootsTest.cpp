#include "cli/CliWorld.h"
#include "cli/Person.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <sstream>

namespace sweeply {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using Json = nlohmann::ordered_json;
using Paths = std::vector<std::string>;

/// Several volumes with a cache each, and a list of roots.
class ManyRootsTest : public CliTest {
  protected:
    ManyRootsTest() {
        write(cache("item"), "1");
        for (const char* name : {"two", "three $(x)\x1b"})
            fs::copy(host(""), volume(name), fs::copy_options::recursive);
    }

    std::string volume(const std::string& name) const { return m_folder + "/" + name; }
    std::string list(const std::string& contents) const {
        write("/../list", contents);
        return m_folder + "/list";
    }
    ProcessResult runOnList(const std::string& contents, Paths arguments) const {
        arguments.insert(arguments.begin(), {"--roots-from", list(contents)});
        return run(arguments);
    }
    /// The objects of a run, one from each line, sorted by their roots.
    static std::vector<Json> objectsOf(const ProcessResult& result) {
        std::vector<Json> objects;
        std::istringstream output(result.output);
        for (std::string line; std::getline(output, line);) {
            objects.push_back(Json::parse(line));
            EXPECT_EQ(objects.back().begin().key(), "root");
        }
        std::ranges::stable_sort(objects, {}, [](const Json& object) { return object["root"].get<std::string>(); });
        return objects;
    }
    /// In the order of those objects: what a clean removed, or the error.
    static Paths outcomesOf(const std::vector<Json>& objects) {
        Paths outcomes;
        for (const auto& object : objects)
            outcomes.push_back(object.contains("error") ? object["error"].get<std::string>()
                                                        : object["removed"].dump() + " removed");
        return outcomes;
    }
};

TEST_F(ManyRootsTest, EachTargetHasALineWhateverBecomesOfTheOthers) {
    write("/../file", "x");
    makeFolder("/../empty");
    link("/../alias", "two");
    const std::string contents = "\xEF\xBB\xBF# The library\r\n\r\n" + volume("root") + "\r\n  # more\n \t\n" +
                                 volume("two") + "/\n" + volume("missing") + "\n" + volume("file") + "\n" +
                                 volume("empty") + "\n" + volume("alias") + "\n" + volume("root") + "\n" +
                                 volume("three $(x)\x1b");
    auto cleaned = everything();
    cleaned["/list"] = contents;
    const Matcher<Paths> outcomes = UnorderedElementsAre("is in the list already", HasSubstr("no user's home"),
                                                         HasSubstr("directory"), HasSubstr("No such file"), "1 removed",
                                                         "is in the list already", "1 removed", "1 removed");
    for (const char* jobs : {"1", "3"}) {
        const auto scan = runOnList(contents, {"--jobs", jobs, "scan", "--json"});
        EXPECT_EQ(scan.exitStatus, 2);
        const auto objects = objectsOf(scan);
        ASSERT_EQ(objects.size(), 8U);

        const auto clean = runOnList(contents, {"--jobs", jobs, "clean", "--yes", "--json"});
        EXPECT_EQ(clean.exitStatus, 2);
        EXPECT_THAT(outcomesOf(objectsOf(clean)), outcomes);
        EXPECT_THAT(clean.errors, HasSubstr("sweeply-cli: " + volume("missing") + ": No such file"));
        for (const char* root : {"/root", "/two", "/three $(x)\x1b"}) {
            cleaned.erase(root + cache("item"));
            EXPECT_FALSE(fs::exists(m_folder + root + cache("item")));
        }
        EXPECT_EQ(everything(), cleaned);
        for (const auto& object : objectsOf(runOnList(contents, {"--jobs", jobs, "scan", "--json"}))) {
            EXPECT_EQ(object.contains("error") ? Json(0) : object["totals"]["filesFound"], 0);
        }
        for (const char* root : {"/root", "/two", "/three $(x)\x1b"})
            write("/.." + (root + cache("item")), "1");
    }
}

TEST_F(ManyRootsTest, TextTellsWhoseItIs) {
    write("/../two/Users/sam/Library/Caches/closed/file");
    fs::permissions(volume("two") + cache("closed"), fs::perms::none);
    const std::string contents = volume("three $(x)\x1b") + "\n" + volume("two") + "\n";
    for (const char* jobs : {"1", "2"}) {
        const auto result = runOnList(contents, {"--jobs", jobs, "clean", "user-caches", "--yes"});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_THAT(result.output, HasSubstr("/three $(x)\\x1b\n"));
        EXPECT_THAT(result.output, HasSubstr(volume("two") + "\n"));
        EXPECT_THAT(result.errors, HasSubstr("sweeply-cli: " + volume("two") + ": the scan was incomplete"));
    }
    fs::permissions(volume("two") + cache("closed"), fs::perms::owner_all);
}

TEST_F(ManyRootsTest, AnswersEveryCommandAndGoesWithAllUsers) {
    write("/../two/Users/ann/Library/Caches/anns", "1");
    const auto program = "printf '%s\\n' \"$1\" \"$2\" | \"$0\" --roots-from - --all-users clean caches --yes --json";
    const auto piped = runProcess("/bin/sh", {"-c", program, SWEEPLY_CLI, volume("root"), volume("two")}).value();
    EXPECT_EQ(piped.exitStatus, 0);
    const auto objects = objectsOf(piped);
    EXPECT_THAT(outcomesOf(objects), ElementsAre("1 removed", "2 removed"));
    EXPECT_EQ(objects[1]["users"].size(), 2U);
    for (const char* command : {"apps", "modules", "receipts", "extensions", "leftovers", "history", "kept", "prefs"}) {
        const auto result = runOnList(volume("root"), {command, "--json"});
        EXPECT_EQ(result.exitStatus, 0) << command << result.errors;
        EXPECT_EQ(objectsOf(result).size(), 1U) << command;
    }
    const auto unknown = objectsOf(runOnList(volume("root"), {"history", "RUN", "--json"}));
    EXPECT_THAT(unknown.at(0)["error"].get<std::string>(), HasSubstr("RUN"));
}

TEST_F(ManyRootsTest, AnInterruptStopsThoseUnderWayAndBeginsNoMore) {
    for (const char* root : {"/root", "/two", "/three $(x)\x1b"}) {
        for (int i = 0; i < 100; ++i)
            write("/.." + (root + cache(std::to_string(i))), "1");
    }
    const auto before = everything();
    const std::string contents = volume("root") + "\n" + volume("two") + "\n" + volume("three $(x)\x1b") + "\n";
    for (const char* jobs : {"1", "2"}) {
        Person person({"--pace", "gentle", "--roots-from", list(contents), "--jobs", jobs, "clean", "--yes"});
        ASSERT_TRUE(person.sees(*jobs == '1' ? "1 of 3  " : "0 of 3"));
        person.interrupts();
        EXPECT_EQ(person.endsWith(), 130);
        EXPECT_THAT(person.seen(), HasSubstr("of 3 targets were not begun"));
    }
    auto after = everything();
    after.erase("/list");
    EXPECT_TRUE(after == before);
}

TEST_F(ManyRootsTest, ATargetThatVanishesIsSaidSo) {
    for (int i = 0; i < 10; ++i)
        write(cache(std::to_string(i)), "1");
    Person person(
        {"--pace", "gentle", "--roots-from", list(volume("root") + "\n" + volume("two")), "scan", "user-caches"});
    ASSERT_TRUE(person.sees("1 of 2  "));
    fs::rename(volume("root"), volume("away"));
    EXPECT_EQ(person.endsWith(), 1);
    EXPECT_THAT(person.seen(), HasSubstr("/root: is not there any more"));
    EXPECT_THAT(person.seen(), HasSubstr("2 of 2  "));
    fs::rename(volume("away"), volume("root"));
}

TEST_F(ManyRootsTest, WhatCannotBeDoneForManyIsRefused) {
    const auto before = everything();
    write("/../zero", std::string("/\0/x\n", 5));
    write("/../nothing", "# nothing\n\r\n");
    for (const auto& [arguments, complaint] : std::vector<std::pair<Paths, std::string>>{
             {{"--roots-from", m_folder + "/none", "scan"}, "/none: No such file"},
             {{"--roots-from", m_folder, "scan"}, "Is a directory"},
             {{"--roots-from", m_folder + "/zero", "scan"}, "holds a zero byte"},
             {{"--roots-from", m_folder + "/nothing", "scan"}, "names no roots"},
             {{"--roots-from", "-", "scan"}, "names no roots"},
             {{"--roots-from", "x", "--root", "/", "scan"}, "exclude each other"},
             {{"--roots-from", "x", "size", "/"}, "does not go with"},
             {{"--roots-from", "x", "-s"}, "does not go with"},
             {{"--roots-from", "x", "schedule"}, "does not go with"},
             {{"--roots-from", "x", "clean", "--yes", "--notify"}, "one user's clean"},
             {{"--roots-from", "x", "clean"}, "say --yes"},
             {{"--roots-from", "x", "apply", "plan"}, "say --yes"},
             {{"--roots-from", "x", "apply", "-", "--yes"}, "for every target"},
             {{"--roots-from", "x", "scan", "--plan", "plan"}, "one user of one target"},
             {{"--roots-from", "x", "--jobs", "0", "scan"}, "a number from 1 to 64"},
             {{"--jobs", "2", "scan"}, "goes with --roots-from"}}) {
        const auto result = run(arguments);
        EXPECT_EQ(result.exitStatus, 2) << complaint;
        EXPECT_THAT(result.errors, HasSubstr(complaint));
        EXPECT_EQ(result.output, "");
    }
    for (const char* list : {"/zero", "/nothing"})
        fs::remove(m_folder + list);
    EXPECT_EQ(everything(), before);
}

} // namespace
} // namespace sweeply
