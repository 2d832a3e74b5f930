// measure COMMAND [ARG...]: runs a command with its output thrown away and prints "SECONDS PEAK-KIB", of the whole
// process from its start to its end.
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

extern char** environ;

int main(int argc, char** argv) {
    if (argc < 2)
        return 2;
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    const auto start = std::chrono::steady_clock::now();
    pid_t child = 0;
    int status = 0;
    rusage usage{};
    if (::posix_spawnp(&child, argv[1], &actions, nullptr, argv + 1, environ) != 0 ||
        ::wait4(child, &status, 0, &usage) != child) {
        std::perror(argv[1]);
        return 2;
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "measure: %s failed\n", argv[1]);
        return 1;
    }
    std::printf("%.4f %ld\n", took.count(), usage.ru_maxrss);
}
