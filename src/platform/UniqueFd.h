#pragma once

#include <unistd.h>
#include <utility>

namespace sweeply {

/// Owns one file descriptor and closes it.
class UniqueFd final {
  public:
    UniqueFd() = default;
    explicit UniqueFd(int fd) : m_fd(fd) {}
    UniqueFd(UniqueFd&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept {
        if (this != &other)
            reset(std::exchange(other.m_fd, -1));
        return *this;
    }
    ~UniqueFd() { reset(); }

    void reset(int fd = -1) {
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = fd;
    }
    [[nodiscard]] int release() { return std::exchange(m_fd, -1); }

    [[nodiscard]] int get() const { return m_fd; }
    explicit operator bool() const { return m_fd >= 0; }

  private:
    int m_fd = -1;
};

} // namespace sweeply
