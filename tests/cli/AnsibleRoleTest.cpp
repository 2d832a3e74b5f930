#include "cli/CliWorld.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using namespace testing;
using Json = nlohmann::ordered_json;

/// Two volumes of one host, and a controller that reaches it without a network.
class AnsibleRoleTest : public CliTest {
  protected:
    AnsibleRoleTest() {
        std::filesystem::copy(SWEEPLY_ANSIBLE, m_folder + "/ansible", std::filesystem::copy_options::recursive);
        write(cache("one/data"), std::string(5'000, 'x'));
        write(cache("two/data"), std::string(9'000, 'x'));
        std::filesystem::copy(m_folder + "/root", m_folder + "/second mac", std::filesystem::copy_options::recursive);
        write("/../second mac" + cache(m_nasty) + "/data", std::string(5'000, 'x'));
        const Json host{{"ansible_connection", "local"},
                        {"ansible_python_interpreter", "/usr/bin/python3"},
                        {"sweeply_cli", SWEEPLY_CLI},
                        {"sweeply_modules", {"user-caches", "user-logs"}},
                        {"sweeply_plans", m_folder + "/plans"},
                        {"sweeply_approved", m_folder + "/approved"},
                        {"sweeply_volumes",
                         Json::array({{{"root", m_folder + "/root"}, {"name", "first"}},
                                      {{"root", m_folder + "/second mac"}, {"user", "sam"}, {"name", "second"}}})}};
        write("/../inventory.yml", Json{{"all", {{"hosts", {{"lab", host}}}}}}.dump());
    }

    ProcessResult runAnsible(const std::string& program, std::vector<std::string> arguments) const {
        // Both tools look around where they are started.
        const UniqueFd here(::open((m_folder + "/ansible").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        ProcessOptions options;
        options.workingDirectory = here.get();
        options.errors = OutputTo::Capture;
        options.environment = {{"LC_ALL", "C.UTF-8"},
                               {"HOME", m_folder},
                               {"ANSIBLE_LOCAL_TEMP", m_folder + "/controller"},
                               {"ANSIBLE_REMOTE_TEMP", m_folder + "/host"},
                               {"ANSIBLE_SHOW_CUSTOM_STATS", "1"},
                               {"ANSIBLE_NOCOLOR", "1"}};
        return runProcess("/usr/bin/" + program, arguments, options).value();
    }
    ProcessResult play(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments{"-i", m_folder + "/inventory.yml", "clean.yml"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runAnsible("ansible-playbook", arguments);
    }
    /// Approves what is in the plan, but for the item of that name.
    void approve(const std::string& plan, const std::string& except = "") const {
        auto json = Json::parse(read("/../plans/lab/" + plan + ".json"));
        for (auto& item : json["items"])
            item["checked"] = item["path"] != cache(except);
        write("/../approved/lab/" + plan + ".json", json.dump());
    }

    /// What would run a program, were it taken for a template.
    const std::string m_nasty = "{{ lookup('pipe', 'cd && touch injected') }}";
};

TEST_F(AnsibleRoleTest, ApprovedPlansAreAppliedAndTheSecondRunChangesNothing) {
    const auto before = everything();
    const auto looked = play({"--check"});
    EXPECT_EQ(looked.exitStatus, 0) << looked.output << looked.errors;
    EXPECT_THAT(looked.output, HasSubstr("changed=0"));
    auto after = everything();
    std::erase_if(after, [&](const auto& entry) { return !before.contains(entry.first); });
    EXPECT_EQ(after, before);

    approve("first", "one");
    approve("second");
    write("/../second mac" + cache(m_nasty) + "/data", "changed since");
    const auto applied = play();
    EXPECT_EQ(applied.exitStatus, 2) << "an item that changed stays, and that is told";
    EXPECT_THAT(applied.output, AllOf(HasSubstr("changed=1"), HasSubstr("\"sweeply_freed_bytes\": 32000"),
                                      HasSubstr("1 items left that were to go"), HasSubstr("could not remove")))
        << applied.errors;
    EXPECT_THAT(names(kCaches), ElementsAre("one"));
    EXPECT_THAT(names("/../second mac" + std::string(kCaches)), ElementsAre(m_nasty));

    approve("second"); // what this run found after it had removed something
    const auto rest = play();
    EXPECT_EQ(rest.exitStatus, 0) << rest.output << rest.errors;
    EXPECT_THAT(rest.output, AllOf(HasSubstr("changed=1"), HasSubstr("\"sweeply_freed_bytes\": 4000")));
    const auto again = play();
    EXPECT_EQ(again.exitStatus, 0) << again.output << again.errors;
    EXPECT_THAT(again.output, AllOf(HasSubstr("changed=0"), HasSubstr("\"sweeply_freed_bytes\": 0")));
    EXPECT_THAT(names(kCaches), ElementsAre("one"));
    EXPECT_FALSE(exists("/../injected"));
    EXPECT_THAT(names("/../host"), Not(Contains(StartsWith("sweeply."))));

    remove("/../second mac");
    const auto without = play();
    EXPECT_EQ(without.exitStatus, 2) << "one volume is not there, and the other is looked after";
    EXPECT_THAT(without.output, AllOf(HasSubstr("second mac: No such file"), HasSubstr("changed=0")));
}

TEST_F(AnsibleRoleTest, LinterHasNothingToSay) {
    const auto said =
        runAnsible("ansible-lint", {"--offline", "--nocolor", "--profile", "production", "clean.yml", "roles/sweeply"});
    EXPECT_EQ(said.exitStatus, 0) << said.output << said.errors;
    EXPECT_THAT(said.output + said.errors, HasSubstr("0 failure(s), 0 warning(s) on 9 files"));
}

} // namespace
} // namespace sweeply
