#include "platform/Process.h"

#include "platform/UniqueFd.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <optional>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace sweeply {

namespace {

/// What posix_spawn does in the child before it becomes the program.
class SpawnPlan final {
  public:
    SpawnPlan() {
        // A parent that blocks signals in its workers or ignores broken pipes must not hand that down.
        sigset_t none;
        sigset_t defaults;
        sigemptyset(&none);
        sigemptyset(&defaults);
        for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGPIPE, SIGCHLD})
            sigaddset(&defaults, signal);
        keep(posix_spawn_file_actions_init(&m_actions));
        keep(posix_spawnattr_init(&m_attributes));
        keep(posix_spawnattr_setsigmask(&m_attributes, &none));
        keep(posix_spawnattr_setsigdefault(&m_attributes, &defaults));
        keep(posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;
    ~SpawnPlan() {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }

    void useNull(int fd) {
        keep(
            posix_spawn_file_actions_addopen(&m_actions, fd, "/dev/null", fd == STDIN_FILENO ? O_RDONLY : O_WRONLY, 0));
    }
    /// Duplicating a descriptor onto itself takes its close-on-exec flag away.
    void use(int ours, int fd) { keep(posix_spawn_file_actions_adddup2(&m_actions, ours, fd)); }
    void startIn(int directory) { keep(posix_spawn_file_actions_addfchdir_np(&m_actions, directory)); }

    /// The child's process id, or an error number.
    tl::expected<pid_t, int> spawn(const std::string& program, char* const* argv, char* const* envp) const {
        pid_t pid = -1;
        const int error =
            m_error != 0 ? m_error : posix_spawn(&pid, program.c_str(), &m_actions, &m_attributes, argv, envp);
        if (error != 0)
            return tl::unexpected(error);
        return pid;
    }

  private:
    void keep(int error) {
        if (m_error == 0)
            m_error = error;
    }

    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
    int m_error = 0; ///< the first that setting up met
};

struct Pipe {
    UniqueFd readEnd;
    UniqueFd writeEnd;
};

/// Moves a descriptor out of the standard ones' way: we may have been started with those closed.
UniqueFd aboveStandard(int fd) {
    UniqueFd original(fd);
    if (fd > STDERR_FILENO)
        return original;
    return UniqueFd(::fcntl(fd, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

/// A pipe for `destination` if it is to be captured, else an empty one.
tl::expected<Pipe, int> pipeFor(OutputTo destination) {
    if (destination != OutputTo::Capture)
        return Pipe{};
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return tl::unexpected(errno);
    Pipe made{aboveStandard(ends[0]), aboveStandard(ends[1])};
    if (!made.readEnd || !made.writeEnd)
        return tl::unexpected(errno);
    return made;
}

void direct(SpawnPlan& plan, int fd, OutputTo destination, const Pipe& pipe) {
    if (destination == OutputTo::Capture)
        plan.use(pipe.writeEnd.get(), fd);
    else if (destination == OutputTo::Discard)
        plan.useNull(fd);
}

std::vector<std::string> environmentWith(const std::vector<std::pair<std::string, std::string>>& additions) {
    std::vector<std::string> result;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view text(*entry);
        bool replaced = false;
        for (const auto& [name, value] : additions)
            replaced = replaced || text.starts_with(name + "=");
        if (!replaced)
            result.emplace_back(text);
    }
    for (const auto& [name, value] : additions)
        result.push_back(name + "=" + value);
    return result;
}

/// As the kernel wants it: pointers into `texts`, and a null pointer at the end.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// Appends what can be read now and closes the pipe at its end. An error number, or 0.
int readSome(UniqueFd& from, std::string& to, std::size_t limit) {
    std::array<char, 65536> buffer;
    const ssize_t count = ::read(from.get(), buffer.data(), buffer.size());
    if (count < 0)
        return errno == EINTR ? 0 : errno;
    if (count == 0) {
        from.reset();
        return 0;
    }
    if (to.size() + static_cast<std::size_t>(count) > limit)
        return EFBIG;
    to.append(buffer.data(), static_cast<std::size_t>(count));
    return 0;
}

/// Becomes readable when a stop is asked for; never where none can be.
class StopPipe final {
  public:
    explicit StopPipe(const std::stop_token& stop) {
        if (!stop.stop_possible() || ::pipe2(m_ends.data(), O_CLOEXEC) != 0)
            return;
        m_readEnd.reset(m_ends[0]);
        m_callback.emplace(stop, Close{UniqueFd(m_ends[1])});
    }

    [[nodiscard]] int fd() const { return m_readEnd.get(); }

  private:
    struct Close {
        UniqueFd writeEnd;
        void operator()() { writeEnd.reset(); }
    };

    std::array<int, 2> m_ends{};
    UniqueFd m_readEnd;
    std::optional<std::stop_callback<Close>> m_callback;
};

/// Reads both pipes side by side: a child that fills one while we wait on the other would wait for ever.
/// `atStop` is called when `stopped` becomes readable, and says whether to read on.
int readBoth(UniqueFd& output, UniqueFd& errors, int stopped, const std::function<bool()>& atStop,
             ProcessResult& result, std::size_t limit) {
    while (output || errors) {
        // poll passes over descriptors that are negative.
        std::array<pollfd, 3> waiting{pollfd{output.get(), POLLIN, 0}, pollfd{errors.get(), POLLIN, 0},
                                      pollfd{stopped, POLLIN, 0}};
        if (::poll(waiting.data(), waiting.size(), -1) < 0 && errno != EINTR)
            return errno;
        if (waiting[2].revents != 0) {
            if (!atStop())
                return ECANCELED;
            stopped = -1;
        }
        int error = 0;
        if (output && waiting[0].revents != 0)
            error = readSome(output, result.output, limit);
        if (error == 0 && errors && waiting[1].revents != 0)
            error = readSome(errors, result.errors, limit);
        if (error != 0)
            return error;
    }
    return 0;
}

int waitFor(pid_t pid, ProcessResult& result) {
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR)
            return errno;
    }
    if (WIFSIGNALED(status))
        result.signal = WTERMSIG(status);
    else
        result.exitStatus = WEXITSTATUS(status);
    return 0;
}

/// An argument cannot carry a zero byte: the program would get a shorter one, which may name something else.
bool holdsZeroByte(const std::vector<std::string>& arguments) {
    for (const std::string& argument : arguments) {
        if (argument.find('\0') != std::string::npos)
            return true;
    }
    return false;
}

} // namespace

Result<ProcessResult> runProcess(const std::string& program, const std::vector<std::string>& arguments,
                                 const ProcessOptions& options) {
    if (holdsZeroByte(arguments))
        return Failure(Error{ErrorKind::Other, program, "an argument holds a zero byte"});
    auto output = pipeFor(options.output);
    auto errors = pipeFor(options.errors);
    if (!output || !errors)
        return Failure(systemError(!output ? output.error() : errors.error(), program));

    SpawnPlan plan;
    if (options.input == InputFrom::Nothing)
        plan.useNull(STDIN_FILENO);
    direct(plan, STDOUT_FILENO, options.output, *output);
    direct(plan, STDERR_FILENO, options.errors, *errors);
    for (const int fd : options.inheritedDescriptors)
        plan.use(fd, fd);
    if (options.workingDirectory >= 0)
        plan.startIn(options.workingDirectory);

    std::vector<std::string> argumentTexts{program};
    argumentTexts.insert(argumentTexts.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environmentTexts = environmentWith(options.environment);
    const auto child = plan.spawn(program, pointersTo(argumentTexts).data(), pointersTo(environmentTexts).data());
    if (!child)
        return Failure(systemError(child.error(), program));
    output->writeEnd.reset();
    errors->writeEnd.reset();

    ProcessResult result;
    const StopPipe stopped(options.stop);
    const auto atStop = [&] { return options.stopSignal != SIGKILL && ::kill(*child, options.stopSignal) == 0; };
    const int readError =
        readBoth(output->readEnd, errors->readEnd, stopped.fd(), atStop, result, options.captureLimit);
    if (readError != 0)
        ::kill(*child, SIGKILL);
    const int waitError = waitFor(*child, result);
    if (readError == ECANCELED)
        return Failure(Error{ErrorKind::Stopped, program, "stopped"});
    if (readError == EFBIG)
        return Failure(Error{ErrorKind::TooLarge, program, "it wrote more than can be taken"});
    if (readError != 0 || waitError != 0)
        return Failure(systemError(readError != 0 ? readError : waitError, program));
    return result;
}

} // namespace sweeply
