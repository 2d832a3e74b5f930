#include "platform/ReadProblems.h"

#include "platform/TargetPath.h"

namespace sweeply {

void ReadProblems::add(const Error& met) {
    Error error = met;
    if (error.path.starts_with('/'))
        error.path = normalisedPath(error.path);
    {
        const std::lock_guard lock(m_mutex);
        if (!m_told.insert(error.path).second)
            return;
        const bool isUnread = error.kind != ErrorKind::NotFound && error.kind != ErrorKind::Damaged;
        if (isUnread && !m_isRemoving)
            m_problems.push_back(error);
    }
    if (m_listener)
        m_listener(error);
}

void ReadProblems::addFailure(const Error& error) {
    // What is no path at all can name nothing unread.
    const bool isPath = error.path.starts_with('/') && error.path.find('\0') == std::string::npos;
    if (!isPath || error.kind == ErrorKind::NotFound || error.kind == ErrorKind::WrongType)
        return;
    {
        const std::lock_guard lock(m_mutex);
        if (m_isRemoving)
            return;
    }
    add(error);
}

void ReadProblems::startOver() {
    const std::lock_guard lock(m_mutex);
    m_told.clear();
    m_problems.clear();
}

void ReadProblems::setRemoving(bool isRemoving) {
    const std::lock_guard lock(m_mutex);
    m_isRemoving = isRemoving;
}

std::vector<Error> ReadProblems::all() const {
    const std::lock_guard lock(m_mutex);
    return m_problems;
}

bool ReadProblems::isEmpty() const {
    const std::lock_guard lock(m_mutex);
    return m_problems.empty();
}

} // namespace sweeply
