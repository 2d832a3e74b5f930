#include "cli/StandardOutput.h"

#include "cli/Interrupt.h"

#include <cerrno>
#include <csignal>
#include <iostream>
#include <unistd.h>

namespace sweeply {

namespace {

constexpr std::size_t kPieceSize = std::size_t{1} << 16U;

} // namespace

StandardOutput::StandardOutput() : m_pending(kPieceSize, '\0'), m_before(std::cout.rdbuf(this)) {
    ::signal(SIGPIPE, SIG_IGN);
    setp(m_pending.data(), m_pending.data() + m_pending.size());
}

StandardOutput::~StandardOutput() {
    std::cout.flush();
    std::cout.rdbuf(m_before);
}

StandardOutput::int_type StandardOutput::overflow(int_type character) {
    if (sync() != 0)
        return traits_type::eof();
    if (!traits_type::eq_int_type(character, traits_type::eof()))
        return sputc(traits_type::to_char_type(character));
    return traits_type::not_eof(character);
}

int StandardOutput::sync() {
    const char* next = pbase();
    while (next != pptr() && m_failure == 0) {
        const ssize_t count = ::write(STDOUT_FILENO, next, static_cast<std::size_t>(pptr() - next));
        if (count >= 0) {
            next += count;
        } else if (errno != EINTR) {
            m_failure = errno;
            interrupt::request();
        }
    }
    setp(m_pending.data(), m_pending.data() + m_pending.size());
    return m_failure == 0 ? 0 : -1;
}

} // namespace sweeply
