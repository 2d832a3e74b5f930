#pragma once

#include "cli/ExitCode.h"

#include <functional>
#include <utility>

namespace sweeply {

/// How far a command has come: it is done, or it has shown what it would change and waits for the word to do so.
struct Step {
    Step(ExitCode done) : outcome(done) {} // NOLINT(google-explicit-constructor): most commands are done at once
    Step(std::function<ExitCode(bool)> theRest, bool hasQuestion) : rest(std::move(theRest)), isQuestion(hasQuestion) {}

    ExitCode outcome = ExitCode::Done; ///< of what is done
    /// Does the rest, or, without the person's agreement, says that nothing was done. Empty where there is none.
    std::function<ExitCode(bool isAgreed)> rest;
    /// Is anything checked that a person is to be asked about?
    bool isQuestion = false;

    /// The same, with what `finish` makes of its outcome, now or at the end.
    [[nodiscard]] Step finishedBy(std::function<ExitCode(ExitCode)> finish) && {
        if (!rest)
            return finish(outcome);
        return {
            [before = std::move(rest), finish = std::move(finish)](bool isAgreed) { return finish(before(isAgreed)); },
            isQuestion};
    }
};

} // namespace sweeply
