#include "ui/SpaceWalk.h"

#include <utility>

namespace sweeply {

void SpaceWalk::start(const std::string& path) {
    stop();
    (void)take();
    m_problems = std::make_unique<ReadProblems>();
    m_isRunning = true;
    m_thread = std::jthread([this, path](const std::stop_token& stop) {
        const auto keep = [this](FolderPart part) {
            const std::lock_guard lock(m_mutex);
            m_parts.push_back(std::move(part));
        };
        if (const auto read = measureContents(m_files, path, m_units, stop, keep, *m_problems); !read)
            m_problems->add(read.error());
        m_isRunning = false;
    });
}

void SpaceWalk::stop() {
    m_thread.request_stop();
    if (m_thread.joinable())
        m_thread.join();
}

std::vector<FolderPart> SpaceWalk::take() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_parts, {});
}

} // namespace sweeply
