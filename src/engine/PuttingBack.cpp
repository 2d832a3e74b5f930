#include "engine/PuttingBack.h"

#include "engine/AuthorisationSession.h"

#include <algorithm>
#include <iterator>

namespace sweeply {

Result<std::vector<UndoneItem>> putBack(ChangeRuns& runs, AuthorisationSession& authorisation, const std::string& run,
                                        const std::vector<std::string>& paths, const std::function<bool()>& isStopped) {
    auto undone = runs.undo(run, paths, isStopped);
    const auto needsRights = [](const UndoneItem& item) { return item.needsRights; };
    if (!undone || authorisation.isAuthorised() || std::ranges::none_of(*undone, needsRights))
        return undone;
    authorisation.startRun();
    if (!authorisation.demanded([] {}))
        return undone;
    auto again = runs.undo(run, paths, isStopped);
    if (again) {
        std::erase_if(*undone, needsRights);
        std::ranges::move(*again, std::back_inserter(*undone));
    }
    return undone;
}

} // namespace sweeply
