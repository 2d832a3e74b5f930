#include "cli/RootJobs.h"

#include "app/OwnProcess.h"
#include "cli/Interrupt.h"
#include "platform/UniqueFd.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <list>
#include <thread>
#include <unistd.h>

namespace sweeply {

namespace {

constexpr std::chrono::milliseconds kTick{100};

/// Something that can be read, and then ends, with the root as the only line.
Result<UniqueFd> listOf(const std::string& root) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return Failure(systemError(errno, root));
    UniqueFd readEnd(ends[0]);
    const UniqueFd writeEnd(ends[1]);
    const std::string line = root + "\n";
    const ssize_t written = ::write(writeEnd.get(), line.data(), line.size());
    if (written != static_cast<ssize_t>(line.size()))
        return Failure(systemError(written < 0 ? errno : ENAMETOOLONG, root));
    return readEnd;
}

} // namespace

RootJobs::RootJobs(const CommandLine& line) : m_line(line), m_program(ownProgram()) {}

Result<ProcessResult> RootJobs::runJob(const std::string& root) const {
    const auto list = listOf(root);
    if (!list)
        return Failure(list.error());
    std::vector<std::string> arguments{"--roots-from", "/dev/fd/" + std::to_string(list->get())};
    arguments.insert(arguments.end(), m_line.perTarget.begin(), m_line.perTarget.end());
    ProcessOptions options;
    options.errors = OutputTo::Capture;
    options.inheritedDescriptors = {list->get()};
    options.stop = m_stop.get_token();
    options.stopSignal = SIGTERM;
    return runProcess(m_program, arguments, options);
}

void RootJobs::work(Job& job) {
    auto result = runJob(job.root);
    const std::lock_guard lock(m_mutex);
    job.result = std::move(result);
    m_isDone.notify_one();
}

void RootJobs::run(const Next& next, const Done& done) {
    std::list<std::pair<Job, std::jthread>> jobs;
    for (;;) {
        while (jobs.size() < m_line.jobs) {
            auto root = next();
            if (!root)
                break;
            auto& [job, thread] = jobs.emplace_back(Job{*std::move(root)}, std::jthread());
            thread = std::jthread([this, &job] { work(job); });
        }
        if (jobs.empty())
            return;
        if (interrupt::wasRequested())
            m_stop.request_stop();
        std::unique_lock lock(m_mutex);
        const auto finished = [&] {
            return std::ranges::find_if(jobs, [](const auto& entry) { return entry.first.result.has_value(); });
        };
        if (!m_isDone.wait_for(lock, kTick, [&] { return finished() != jobs.end(); }))
            continue;
        const auto ended = finished();
        lock.unlock();
        ended->second.join();
        done(ended->first.root, *ended->first.result);
        jobs.erase(ended);
    }
}

} // namespace sweeply
