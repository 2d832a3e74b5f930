#include "cli/Commands.h"
#include "cli/HostFile.h"
#include "cli/Interrupt.h"
#include "cli/Looking.h"
#include "cli/PlanWriting.h"
#include "cli/Removing.h"
#include "cli/Session.h"
#include "engine/plan/PlannedItems.h"
#include "platform/Localization.h"

#include <algorithm>
#include <functional>
#include <iostream>
#include <iterator>
#include <utility>

namespace sweeply {

namespace {

/// Reasons quote the plan, and anybody may have written that.
constexpr std::size_t kLongestReason = 300;

Failure unfit(const std::string& reason) { return Failure(Error{ErrorKind::Other, {}, reason}); }

/// Is the plan for this system, its user, and this program's modules?
Result<void> fits(const Plan& plan, Session& session) {
    const auto here = planTargetOf(session);
    if (plan.target.user != here.user)
        return unfit("the plan is for the files of the user " + plan.target.user + ", not of " + here.user);
    if (plan.target.version != here.version)
        return unfit("the plan is for Mac OS X " + plan.target.version + ", not for " + here.version);
    const auto modules = modulesOf(session);
    for (const auto& item : plan.items) {
        if (std::ranges::find(modules, item.module, &ADScanController::moduleName) == modules.end())
            return unfit("the plan names a module that there is not: " + item.module);
        // Other code would go than the plan was made for.
        if (item.kind == ChangedKind::Slices && plan.target.processors != here.processors)
            return unfit("the plan is for a Mac with " + plan.target.processors + " processors, not " +
                         here.processors);
    }
    return {};
}

Result<Plan> planFor(Session& session) {
    const auto& name = session.commandLine().operands.front();
    return readHostFile(name, kLargestPlan)
        .and_then([&](const std::string& bytes) { return parsePlan(bytes); })
        .and_then([&](Plan plan) { return fits(plan, session).map([&] { return std::move(plan); }); })
        .map_error([&](Error error) {
            error.path = name == "-" ? "standard input" : name;
            if (error.reason.size() > kLongestReason)
                error.reason.replace(kLongestReason, std::string::npos, "...");
            return error;
        });
}

/// Looks once more at what the plan was made of, and tells how to remove what is checked then.
Result<std::function<void()>> lookAgain(Session& session, const Plan& plan) {
    const auto isPath = [](const std::string& argument) { return argument.starts_with('/'); };
    if (plan.command == "uninstall") {
        std::vector<std::string> paths;
        // What is gone altogether is found out item by item.
        std::ranges::copy_if(plan.arguments, std::back_inserter(paths), [&](const std::string& path) {
            return session.application().target().files->attributesOfItemAtPath(path, Links::DontFollow).has_value();
        });
        return [&session, modules = lookToUninstall(session, paths)] { session.uninstallChecked(modules); };
    }
    Scope scope{std::vector<std::string>(), {}};
    for (const auto& argument : plan.arguments)
        (isPath(argument) ? scope.paths : *scope.modules).push_back(argument);
    return look(session, scope).map([&session]() -> std::function<void()> {
        return [&session] { session.removeChecked(); };
    });
}

} // namespace

Step runApply(Session& session) {
    auto& application = session.application();
    const auto plan = planFor(session);
    const auto remove = plan ? lookAgain(session, *plan) : Failure(plan.error());
    if (!remove) {
        session.complain(remove.error().message());
        return ExitCode::Usage;
    }
    const auto modules = modulesOf(session);
    if (!interrupt::wasRequested()) { // what was not looked at yet is not lost
        auto leftAlone = checkAsPlanned(*plan, modules, application.gate(), application.treeLock());
        const auto isGone = [](const LeftAlone& item) { return item.outcome.kind == OutcomeKind::Gone; };
        const auto gone = std::ranges::count_if(leftAlone, isGone);
        if (gone > 0 && !session.commandLine().wantsJson)
            std::cout << localizedFormat("%i items of the plan are gone already.", {std::int64_t{gone}}) << "\n";
        application.runs().setLeftAlone(std::move(leftAlone));
    }
    application.runs().setCommand("apply");
    return removeAfterQuestion(session,
                               [modules, remove = *remove] {
                                   if (std::ranges::any_of(modules, [](const auto* module) {
                                           return module->filesFoundInEnabled() > 0;
                                       }))
                                       remove();
                               })
        .finishedBy([&session](ExitCode outcome) { return afterScan(session, outcome); });
}

} // namespace sweeply
