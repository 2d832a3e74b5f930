#include "cli/AllUsers.h"

#include "app/ModuleSelection.h"
#include "app/UsersWishes.h"
#include "cli/Commands.h"
#include "cli/Interrupt.h"
#include "cli/JsonOutput.h"
#include "cli/JsonPrinter.h"
#include "cli/Session.h"
#include "cli/ShownModules.h"
#include "cli/TextOutput.h"
#include "formats/DisplayEscapes.h"
#include "formats/Utf8.h"
#include "platform/Localization.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <nlohmann/json.hpp>
#include <set>
#include <sys/resource.h>
#include <utility>

namespace sweeply {

namespace {

constexpr const char* kSharedTitle = translatable("Shared by all users");
constexpr const char* kTogetherTitle = translatable("All together");

/// Do users share something that the command tells of?
bool isAnythingShared(const CommandLine& line) { return line.command != Command::History; }

bool showsModules(const CommandLine& line) { return line.command == Command::Scan || line.command == Command::Clean; }

/// The switches of the modules that look at what is shared.
std::vector<std::string> sharedSwitches(const CommandLine& line, const TargetShare& share) {
    std::vector<std::string> switches;
    for (const auto& [key, value] : share.preferences) {
        if (value.asBool() == true)
            switches.push_back(key);
    }
    if (const auto names = line.wantsAllModules ? everyModule() : line.operands; !names.empty())
        switches = switchesNamed(names).value_or(std::vector<std::string>());
    return switchesFor(share.part, std::move(switches));
}

/// The run for one user, or for what all of them share.
struct PartRun {
    std::string user = {};  ///< empty for what is shared
    std::string title = {}; ///< for people
    std::unique_ptr<Session> session = nullptr;
    Step step = ExitCode::Done;
    Json object = nullptr; ///< what the command printed
    LastComplaint complaint = {};
};

/// The runs of one command for all users of one target.
class AllUsersRun final {
  public:
    /// What they run on; outlives them.
    struct Surroundings {
        const CommandLine& line;
        SystemLog& log;
        const RunOutput& output;
    };
    AllUsersRun(const Surroundings& surroundings, const FileManager& files, const SystemVersion& version,
                std::vector<TargetUser> users)
        : m_line(surroundings.line), m_log(surroundings.log), m_output(surroundings.output), m_users(std::move(users)),
          m_wishes(homesOf(m_users)), m_units(sizeUnitsOf(version)), m_target({{"root", validUtf8(files.rootPath())},
                                                                               {"version", version.productVersion()},
                                                                               {"units", nameOfUnits(m_units)}}) {}

    ExitCode run();

  private:
    static std::vector<std::string> homesOf(const std::vector<TargetUser>& users);
    PartRun& addPart(const std::string& user, const std::string& title);
    [[nodiscard]] RunOutput outputOf(PartRun& part) const;
    void lookFor(const TargetUser& user);
    void lookAtShared();
    /// Goes as far as the command goes without a word from anybody.
    void look(PartRun& part, const std::string& user, TargetShare share);
    Result<Step> begin(PartRun& part, const std::string& user, TargetShare share);
    void fail(PartRun& part, const Error& reason);
    void removeOnceAgreed();
    /// Takes over what is to be added up, and lets go of the rest.
    void finish(PartRun& part);
    void printHeading(const std::string& title) const;
    [[nodiscard]] Json object() const;

    const CommandLine& m_line;
    SystemLog& m_log;
    const RunOutput& m_output;
    const std::vector<TargetUser> m_users;
    UsersWishes m_wishes;
    std::set<std::uint32_t> m_owners;
    std::vector<std::unique_ptr<PartRun>> m_parts; ///< their sessions know where they are
    std::string m_firstUser;
    const SizeUnits m_units;
    const Json m_target;
    std::uint64_t m_found = 0;
    std::uint64_t m_freed = 0;
    ChangeSums m_changes;
    ExitCode m_outcome = ExitCode::Done;
};

std::vector<std::string> AllUsersRun::homesOf(const std::vector<TargetUser>& users) {
    std::vector<std::string> homes;
    for (const auto& user : users)
        homes.push_back(FolderConstants(user.name).home);
    return homes;
}

PartRun& AllUsersRun::addPart(const std::string& user, const std::string& title) {
    auto& part = *m_parts.emplace_back(std::make_unique<PartRun>());
    part.user = user;
    part.title = title;
    return part;
}

RunOutput AllUsersRun::outputOf(PartRun& part) const {
    const std::string name = part.user.empty() ? "shared" : part.user;
    return {[&part](const Json& object) { part.object = withTrees(object); },
            [this, &part, name](std::string_view text) {
                part.complaint.set(text);
                m_output.complaint(name + ": " + std::string(text));
            },
            m_output.place + escapedForDisplay(name) + "  "};
}

void AllUsersRun::printHeading(const std::string& title) const {
    if (!m_line.wantsJson)
        std::cout << styleFor(m_line, Terminal::ofThisProcess()).heading(escapedForDisplay(title)) << "\n";
}

Result<Step> AllUsersRun::begin(PartRun& part, const std::string& user, TargetShare share) {
    CommandLine line = m_line;
    line.target = forUser(std::move(line.target), user);
    auto session = Session::open(line, m_log, outputOf(part), std::move(share));
    if (!session)
        return Failure(session.error());
    printHeading(part.title);
    part.session = *std::move(session);
    auto& application = part.session->application();
    if (m_firstUser.empty())
        m_firstUser = user;
    auto step = runCommand(*part.session);
    m_found += totalsOf(shownModules(application)).foundSize;
    if (!part.user.empty() && isAnythingShared(m_line) && !interrupt::wasRequested())
        m_wishes.add(application);
    return step;
}

void AllUsersRun::look(PartRun& part, const std::string& user, TargetShare share) {
    Result<Step> step = ExitCode::Incomplete;
    try {
        step = begin(part, user, std::move(share));
    } catch (const std::exception& exception) {
        step = Failure(Error{ErrorKind::Other, {}, exception.what()});
        part.session.reset();
    }
    if (step)
        part.step = *std::move(step);
    else
        fail(part, step.error());
}

void AllUsersRun::fail(PartRun& part, const Error& reason) {
    outputOf(part).complaint(reason.message());
    part.step = ExitCode::Incomplete;
    if (!part.user.empty())
        m_wishes.addUnknown(reason);
}

void AllUsersRun::lookFor(const TargetUser& user) {
    auto& part = addPart(user.name, user.name);
    if (user.obstacle) {
        fail(part, *user.obstacle);
    } else {
        look(part, user.name,
             {.part = TargetPart::ofUser(FolderConstants(user.name).home),
              .hasOwnerOfItsOwn = m_owners.insert(user.owner).second});
    }
    if (!part.step.rest)
        finish(part);
}

void AllUsersRun::lookAtShared() {
    auto share = m_wishes.share();
    if (m_firstUser.empty() || !isAnythingShared(m_line) ||
        (showsModules(m_line) && sharedSwitches(m_line, share).empty()))
        return;
    auto& part = addPart({}, localizedString(kSharedTitle));
    look(part, m_firstUser, std::move(share));
    if (!part.step.rest)
        finish(part);
}

void AllUsersRun::finish(PartRun& part) {
    m_outcome = std::max(m_outcome, part.step.outcome);
    if (!part.session)
        return;
    const auto& application = part.session->application();
    const auto sums = application.gate().sums();
    m_changes.removed += sums.removed;
    m_changes.kept += sums.kept;
    m_freed += application.statistics().currentRemovedAmountOfSpace();
    part.step.rest = nullptr;
    part.session.reset();
}

void AllUsersRun::removeOnceAgreed() {
    const auto isQuestion = std::ranges::any_of(m_parts, [](const auto& part) { return part->step.isQuestion; });
    const bool isAgreed =
        !interrupt::wasRequested() &&
        (!isQuestion || m_line.saysYes || TerminalAlerts::confirms(localizedString("Remove the checked items?")));
    for (const auto& part : m_parts) {
        if (!part->step.rest)
            continue;
        if (part->step.isQuestion && isAgreed)
            printHeading(part->title);
        part->step.outcome = part->step.rest(isAgreed && !interrupt::wasRequested());
        finish(*part);
    }
}

Json AllUsersRun::object() const {
    Json users = Json::array();
    Json shared = nullptr;
    Json sums = Json::object();
    for (const auto& part : m_parts) {
        addFigures(sums, part->object.is_null() ? Json::object() : part->object, m_units);
        if (part->user.empty()) {
            shared = part->object.is_null() ? Json{{"error", validUtf8(part->complaint.text())}} : part->object;
            continue;
        }
        Json user{{"user", validUtf8(part->user)}};
        if (part->object.is_null())
            user["error"] = validUtf8(part->complaint.text());
        else
            user.update(part->object);
        users.push_back(std::move(user));
    }
    Json object{{"target", m_target}, {"users", std::move(users)}, {"shared", std::move(shared)}};
    object.update(sums);
    return object;
}

ExitCode AllUsersRun::run() {
    for (const auto& user : m_users) {
        if (!interrupt::wasRequested())
            lookFor(user);
    }
    if (!interrupt::wasRequested())
        lookAtShared();
    if (showsModules(m_line) && !m_line.wantsJson) {
        printHeading(localizedString(kTogetherTitle));
        printFound(m_found, m_units, std::cout);
    }
    if (m_line.command == Command::Clean) {
        std::cout.flush(); // what cannot be shown is not removed
        removeOnceAgreed();
        if (!m_line.wantsJson && (m_changes.removed > 0 || m_changes.kept > 0)) {
            printHeading(localizedString(kTogetherTitle));
            printRemoved(m_changes, m_freed, m_units, std::cout);
        }
    }
    if (m_line.wantsJson)
        m_output.object(object());
    return interrupt::wasRequested() ? ExitCode::Interrupted : m_outcome;
}

/// A session holds its target's root open, and before a removal there is one for each user.
void allowOpenFiles(std::size_t sessions) {
    constexpr rlim_t kFilesBesides = 256;
    rlimit limit{};
    const rlim_t needed = sessions + kFilesBesides;
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= needed)
        return;
    limit.rlim_cur = std::min(needed, limit.rlim_max);
    (void)::setrlimit(RLIMIT_NOFILE, &limit); // else some users cannot be looked at, which is said of each
}

} // namespace

bool goesForAllUsers(Command command) {
    return command == Command::Scan || command == Command::Clean || command == Command::Leftovers ||
           command == Command::History;
}

Result<ExitCode> runForAllUsers(const CommandLine& line, SystemLog& log, const RunOutput& output) {
    auto files = FileManager::open(line.target.root.value_or("/"));
    if (!files)
        return Failure(files.error());
    auto users = usersOf(**files);
    if (!users)
        return Failure(users.error());
    const auto version = versionOf(**files, line.target);
    const auto modules = switchesNamed(showsModules(line) ? line.operands : std::vector<std::string>());
    for (const auto* error : {version ? nullptr : &version.error(), modules ? nullptr : &modules.error()}) {
        if (error)
            return Failure(*error);
    }
    allowOpenFiles(users->size());
    return AllUsersRun({line, log, output}, **files, *version, *std::move(users)).run();
}

} // namespace sweeply
