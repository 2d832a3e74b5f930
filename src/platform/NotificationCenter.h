#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <typeindex>
#include <unordered_map>
#include <vector>

namespace sweeply {

/// In-process notifications, one channel per event type. An event is a struct: what it says are its members, what it is
/// called its `kName`.
///
/// Any thread may post; observers are called on the poster's thread, in the order in which they subscribed. A
/// subscription may end on any thread, but one that ends while another thread posts may still be called once more: end
/// it where no one posts.
class NotificationCenter final {
    struct Channel {
        using Handler = std::function<void(const void*)>;
        using Handlers = std::vector<std::pair<std::size_t, std::shared_ptr<const Handler>>>;

        std::mutex mutex;
        std::shared_ptr<const Handlers> handlers = std::make_shared<const Handlers>(); ///< replaced, never changed
        std::size_t lastNumber = 0;
    };

  public:
    /// Observes until it is destroyed. May outlive the centre.
    class Subscription final {
      public:
        Subscription() = default;
        Subscription(Subscription&&) noexcept = default;
        Subscription& operator=(Subscription&& other) noexcept {
            if (this != &other) {
                end();
                m_channel = std::move(other.m_channel);
                m_number = other.m_number;
            }
            return *this;
        }
        ~Subscription() { end(); }

      private:
        friend class NotificationCenter;
        Subscription(std::shared_ptr<Channel> channel, std::size_t number)
            : m_channel(std::move(channel)), m_number(number) {}
        void end();

        std::shared_ptr<Channel> m_channel;
        std::size_t m_number = 0;
    };

    template<typename Event>
    [[nodiscard]] Subscription observe(std::function<void(const Event&)> handler) {
        return observe(typeid(Event), [handler = std::move(handler)](const void* event) {
            handler(*static_cast<const Event*>(event));
        });
    }

    template<typename Event>
    void post(const Event& event) {
        post(typeid(Event), &event);
    }

  private:
    Subscription observe(std::type_index type, Channel::Handler handler);
    void post(std::type_index type, const void* event);
    std::shared_ptr<Channel> channelFor(std::type_index type);

    std::mutex m_mutex;
    std::unordered_map<std::type_index, std::shared_ptr<Channel>> m_channels; ///< guarded by m_mutex
};

} // namespace sweeply
