#include "platform/SessionBus.h"

#include "platform/HttpClient.h"
#include "platform/SystemLog.h"

#include <charconv>
#include <map>
#include <sdbus-c++/sdbus-c++.h>
#include <utility>

namespace sweeply {

namespace {

constexpr const char* kName = "com.brindle.Sweeply";
constexpr const char* kPath = "/com/brindle/Sweeply";
constexpr const char* kApplication = "org.freedesktop.Application";
constexpr const char* kNotificationInterface = "com.brindle.sweeply";
constexpr const char* kNotification = "uninstallApplications";
constexpr std::size_t kMostPaths = 10'000;

using Variants = std::map<std::string, sdbus::Variant>;

Failure failure(const sdbus::Error& error) {
    return Failure(Error{ErrorKind::Unavailable, "D-Bus", error.getMessage()});
}

/// The path of a "file:" address; anything else, such as a pseudo-file, as it is.
std::string pathOf(const std::string& address) {
    constexpr std::string_view kFile = "file://";
    if (!address.starts_with(kFile))
        return address;
    // A host may stand before the path.
    const auto start = address.find('/', kFile.size());
    std::string path;
    for (std::size_t at = std::min(start, address.size()); at < address.size(); ++at) {
        unsigned byte = 0;
        const char* digits = address.data() + at + 1;
        if (address[at] == '%' && at + 2 < address.size() &&
            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            path += static_cast<char>(byte);
            at += 2;
        } else {
            path += address[at];
        }
    }
    return path;
}

/// Desktops may read the text of a note as markup.
std::string withoutMarkup(std::string_view text) {
    std::string plain;
    for (const char c : text)
        plain += c == '&'   ? std::string("&amp;")
                 : c == '<' ? std::string("&lt;")
                 : c == '>' ? std::string("&gt;")
                            : std::string(1, c);
    return plain;
}

std::string addressOf(const std::string& file) {
    if (!file.starts_with('/'))
        return file;
    std::string address = "file://";
    for (std::size_t at = 0; at < file.size();) {
        const auto end = std::min(file.find('/', at + 1), file.size());
        address += "/" + percentEscaped(std::string_view(file).substr(at + 1, end - at - 1));
        at = end;
    }
    return address;
}

} // namespace

struct SessionBus::Connection {
    Connection(std::unique_ptr<sdbus::IConnection> opened, SystemLog& systemLog)
        : log(systemLog), bus(std::move(opened)) {}
    ~Connection() { bus->leaveEventLoop(); }

    std::vector<std::string> limited(std::vector<std::string> paths) const {
        if (paths.size() > kMostPaths) {
            log.log("D-Bus: " + std::to_string(paths.size() - kMostPaths) + " paths of one message were dropped");
            paths.resize(kMostPaths);
        }
        return paths;
    }

    void open(const std::vector<std::string>& addresses) const {
        std::vector<std::string> files;
        for (const auto& address : limited(addresses))
            files.push_back(pathOf(address));
        requests.open(std::move(files));
    }

    void hear(sdbus::Message& message) const {
        Variants values;
        UninstallNotification notification;
        try {
            message >> values;
            if (values.empty()) {
                requests.uninstallApplications(std::nullopt);
                return;
            }
            if (const auto command = values.find("command"); command != values.end())
                notification.command = command->second.get<std::string>();
            if (const auto paths = values.find("applications"); paths != values.end())
                notification.applications = limited(paths->second.get<std::vector<std::string>>());
        } catch (const sdbus::Error& error) {
            log.log("D-Bus: a notification that cannot be understood: " + error.getMessage());
            return;
        }
        requests.uninstallApplications(std::move(notification));
    }

    SystemLog& log;
    BusRequests requests;
    std::unique_ptr<sdbus::IConnection> bus;
    std::unique_ptr<sdbus::IObject> object;
    sdbus::Slot subscription;
};

std::unique_ptr<SessionBus> SessionBus::connect(SystemLog& log) {
    try {
        return std::unique_ptr<SessionBus>(
            new SessionBus(std::make_unique<Connection>(sdbus::createSessionBusConnection(), log)));
    } catch (const sdbus::Error& error) {
        log.log("No session bus: " + error.getMessage());
        return nullptr;
    }
}

SessionBus::SessionBus(std::unique_ptr<Connection> connection) : m_connection(std::move(connection)) {}

SessionBus::~SessionBus() = default;

bool SessionBus::own(BusRequests requests) {
    Connection& connection = *m_connection;
    connection.requests = std::move(requests);
    bool isOwner = true;
    try {
        connection.object = sdbus::createObject(*connection.bus, kPath);
        connection.object->registerMethod("Open")
            .onInterface(kApplication)
            .implementedAs([&connection](const std::vector<std::string>& addresses, const Variants&) {
                connection.open(addresses);
            });
        connection.object->registerMethod("Activate")
            .onInterface(kApplication)
            .implementedAs([&connection](const Variants&) { connection.requests.activate(); });
        connection.object->registerMethod("ActivateAction")
            .onInterface(kApplication)
            .implementedAs([&connection](const std::string&, const std::vector<sdbus::Variant>&, const Variants&) {
                connection.requests.activate();
            });
        connection.object->finishRegistration();
        connection.subscription = connection.bus->addMatch(
            std::string("type='signal',interface='") + kNotificationInterface + "',member='" + kNotification + "'",
            [&connection](sdbus::Message& message) { connection.hear(message); });
        // Last: who finds the name finds the object.
        connection.bus->requestName(kName);
    } catch (const sdbus::Error& error) {
        isOwner = false;
        if (error.getName() != "org.freedesktop.DBus.Error.FileExists" && error.getName() != "System.Error.EEXIST")
            connection.log.log("D-Bus: " + error.getMessage());
    }
    connection.bus->enterEventLoopAsync();
    return isOwner;
}

bool SessionBus::isOwned() {
    constexpr const char* kBus = "org.freedesktop.DBus";
    try {
        bool isOwned = false;
        const auto bus = sdbus::createProxy(*m_connection->bus, kBus, "/org/freedesktop/DBus");
        bus->callMethod("NameHasOwner").onInterface(kBus).withArguments(std::string(kName)).storeResultsTo(isOwned);
        return isOwned;
    } catch (const sdbus::Error&) {
        return false;
    }
}

Result<void> SessionBus::openInRunning(const std::vector<std::string>& files) {
    try {
        const auto running = sdbus::createProxy(*m_connection->bus, kName, kPath);
        if (files.empty()) {
            running->callMethod("Activate").onInterface(kApplication).withArguments(Variants());
            return {};
        }
        std::vector<std::string> addresses;
        for (const auto& file : files)
            addresses.push_back(addressOf(file));
        running->callMethod("Open").onInterface(kApplication).withArguments(addresses, Variants());
        return {};
    } catch (const sdbus::Error& error) {
        return failure(error);
    }
}

Result<void> SessionBus::post(const UninstallNotification& notification) {
    try {
        const auto sender = sdbus::createObject(*m_connection->bus, std::string(kPath) + "/Notifications");
        auto signal = sender->createSignal(kNotificationInterface, kNotification);
        signal << Variants{{"command", notification.command}, {"applications", notification.applications}};
        sender->emitSignal(signal);
        return {};
    } catch (const sdbus::Error& error) {
        return failure(error);
    }
}

Result<void> SessionBus::notify(const DesktopNotification& note) {
    constexpr const char* kDesktop = "org.freedesktop.Notifications";
    try {
        const auto desktop = sdbus::createProxy(*m_connection->bus, kDesktop, "/org/freedesktop/Notifications");
        const std::uint32_t replaces = 0;
        const std::int32_t byTheDesktop = -1;
        desktop->callMethod("Notify").onInterface(kDesktop).withArguments(
            std::string("Sweeply"), replaces, std::string("com.brindle.Sweeply"), note.title,
            withoutMarkup(note.description), std::vector<std::string>(),
            Variants{{"desktop-entry", std::string("com.brindle.Sweeply")}, {"category", note.name}}, byTheDesktop);
        return {};
    } catch (const sdbus::Error& error) {
        return failure(error);
    }
}

} // namespace sweeply
