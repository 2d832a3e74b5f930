#pragma once

namespace sweeply {

/// How sweeply-cli ends; part of its contract with scripts.
enum class ExitCode : int {
    Done = 0,
    /// Something could not be removed or written, or the person said no.
    Incomplete = 1,
    /// The command line or the target is wrong; one line on standard error says what.
    Usage = 2,
    Interrupted = 130,
    /// Nobody reads standard output any more; the run ended as if interrupted. What a shell says of a program that the
    /// system ended for that.
    ReaderGone = 141,
};

} // namespace sweeply
