#include "cli/ManyRoots.h"

#include "cli/Commands.h"
#include "cli/Interrupt.h"
#include "cli/JsonPrinter.h"
#include "cli/RootJobs.h"
#include "cli/RootsList.h"
#include "formats/DisplayEscapes.h"
#include "formats/Utf8.h"
#include "platform/Localization.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <sys/stat.h>
#include <utility>

namespace sweeply {

namespace {

/// What a folder is, whatever it is called.
using FolderIdentity = std::pair<dev_t, ino_t>;

std::optional<FolderIdentity> identityOf(const std::string& root) {
    struct stat status {};
    if (::stat(root.c_str(), &status) != 0)
        return std::nullopt; // whoever opens it says why
    return FolderIdentity(status.st_dev, status.st_ino);
}

void printLine(const Json& object) {
    writeJson(std::cout, object, JsonLayout::OneLine);
    std::cout << "\n" << std::flush;
}

/// The targets of one list.
class RootsRun final {
  public:
    RootsRun(const CommandLine& line, const RunOnTarget& runOnTarget, std::vector<std::string> roots)
        : m_line(line), m_runOnTarget(runOnTarget), m_roots(std::move(roots)) {}

    ExitCode run();

  private:
    /// Fails, with a line, where the root was in the list before.
    [[nodiscard]] bool isNew(const std::string& root);
    void runHere(const std::string& root, std::size_t number);
    void fail(const std::string& root, const std::string& reason);
    static void complainOf(const std::string& root, std::string_view text);
    void runInJobs();

    const CommandLine& m_line;
    const RunOnTarget& m_runOnTarget;
    const std::vector<std::string> m_roots;
    std::set<FolderIdentity> m_seen;
    std::size_t m_begun = 0;
    ExitCode m_outcome = ExitCode::Done;
};

void RootsRun::complainOf(const std::string& root, std::string_view text) {
    complain(text.starts_with(root) ? std::string(text) : root + ": " + std::string(text));
}

void RootsRun::fail(const std::string& root, const std::string& reason) {
    m_outcome = std::max(m_outcome, ExitCode::Usage);
    complainOf(root, reason);
    if (m_line.wantsJson)
        printLine({{"root", validUtf8(root)}, {"error", validUtf8(reason)}});
}

bool RootsRun::isNew(const std::string& root) {
    const auto identity = identityOf(root);
    const bool isKnown = identity && !m_seen.insert(*identity).second;
    if (isKnown)
        fail(root, "is in the list already");
    return !isKnown;
}

void RootsRun::runHere(const std::string& root, std::size_t number) {
    const auto before = identityOf(root);
    CommandLine line = m_line;
    line.target.root = root;
    bool hasObject = false;
    LastComplaint complaint;
    const RunOutput output{[&](const Json& object) {
                               Json whole{{"root", validUtf8(root)}};
                               whole.update(object);
                               printLine(whole);
                               hasObject = true;
                           },
                           [&](std::string_view text) {
                               complaint.set(text);
                               complainOf(root, text);
                           },
                           m_roots.size() == 1 ? std::string()
                                               : localizedFormat("%i of %i", {number, m_roots.size()}) + "  " +
                                                     escapedForDisplay(root) + "  "};
    if (!m_line.wantsJson)
        std::cout << styleFor(line, Terminal::ofThisProcess()).heading(escapedForDisplay(root)) << "\n";
    Result<ExitCode> outcome = ExitCode::Incomplete;
    try {
        outcome = m_runOnTarget(line, output);
    } catch (const std::exception& exception) {
        outcome = Failure(Error{ErrorKind::Other, {}, exception.what()});
    }
    if (!outcome)
        return fail(root, outcome.error().message());
    m_outcome = std::max(m_outcome, *outcome);
    if (identityOf(root) != before) {
        complainOf(root, "is not there any more; what was found and done may be less than it seems");
        m_outcome = std::max(m_outcome, ExitCode::Incomplete);
    }
    if (m_line.wantsJson && !hasObject)
        printLine({{"root", validUtf8(root)}, {"error", validUtf8(complaint.text())}});
    std::cout.flush();
}

void RootsRun::runInJobs() {
    RootJobs jobs(m_line);
    const auto next = [this]() -> std::optional<std::string> {
        while (m_begun < m_roots.size() && !interrupt::wasRequested()) {
            const auto& root = m_roots[m_begun++];
            if (isNew(root))
                return root;
        }
        return std::nullopt;
    };
    std::size_t done = 0;
    const auto draw = [&, isShown = Terminal::ofThisProcess().isErrorTerminal](const std::string& text) {
        if (isShown)
            std::cerr << "\r" + text + "\x1B[K" << std::flush;
    };
    draw(localizedFormat("%i of %i", {done, m_roots.size()}));
    jobs.run(next, [&](const std::string& root, const Result<ProcessResult>& result) {
        draw({});
        if (!result || result->signal != 0) {
            fail(root, result ? "the program that worked on it was ended by signal " + std::to_string(result->signal)
                              : result.error().message());
        } else {
            std::cout << result->output << std::flush;
            std::cerr << result->errors;
            m_outcome = std::max(m_outcome, static_cast<ExitCode>(result->exitStatus));
        }
        draw(localizedFormat("%i of %i", {++done, m_roots.size()}));
    });
    draw({});
}

ExitCode RootsRun::run() {
    if (m_line.jobs > 1) {
        runInJobs();
    } else {
        while (m_begun < m_roots.size() && !interrupt::wasRequested()) {
            const auto& root = m_roots[m_begun++];
            if (isNew(root))
                runHere(root, m_begun);
        }
    }
    if (!interrupt::wasRequested())
        return m_outcome;
    if (m_begun < m_roots.size())
        complain(formatText("stopped; %i of %i targets were not begun", {m_roots.size() - m_begun, m_roots.size()}));
    return ExitCode::Interrupted;
}

} // namespace

Result<ExitCode> runOnRoots(const CommandLine& line, const RunOnTarget& runOnTarget) {
    auto roots = readRootsList(*line.rootsFrom);
    if (!roots)
        return Failure(roots.error());
    return RootsRun(line, runOnTarget, *std::move(roots)).run();
}

} // namespace sweeply
