#include "platform/NotificationCenter.h"

#include <algorithm>

namespace sweeply {

void NotificationCenter::Subscription::end() {
    if (!m_channel)
        return;
    std::lock_guard lock(m_channel->mutex);
    auto handlers = std::make_shared<Channel::Handlers>(*m_channel->handlers);
    std::erase_if(*handlers, [this](const auto& handler) { return handler.first == m_number; });
    m_channel->handlers = std::move(handlers);
}

std::shared_ptr<NotificationCenter::Channel> NotificationCenter::channelFor(std::type_index type) {
    std::lock_guard lock(m_mutex);
    auto& channel = m_channels[type];
    if (!channel)
        channel = std::make_shared<Channel>();
    return channel;
}

NotificationCenter::Subscription NotificationCenter::observe(std::type_index type, Channel::Handler handler) {
    auto channel = channelFor(type);
    std::lock_guard lock(channel->mutex);
    auto handlers = std::make_shared<Channel::Handlers>(*channel->handlers);
    const std::size_t number = ++channel->lastNumber;
    handlers->emplace_back(number, std::make_shared<const Channel::Handler>(std::move(handler)));
    channel->handlers = std::move(handlers);
    return {std::move(channel), number};
}

void NotificationCenter::post(std::type_index type, const void* event) {
    const auto channel = channelFor(type);
    std::shared_ptr<const Channel::Handlers> handlers;
    {
        std::lock_guard lock(channel->mutex);
        handlers = channel->handlers;
    }
    // Without the lock: an observer may post or subscribe itself.
    for (const auto& [number, handler] : *handlers)
        (*handler)(event);
}

} // namespace sweeply
