#include "platform/UserDefaults.h"

#include "platform/FileLock.h"
#include "platform/FileManager.h"
#include "platform/SystemLog.h"

#include <charconv>
#include <ctime>
#include <limits>
#include <type_traits>

namespace sweeply {

namespace {

constexpr std::size_t kLargestFile = 16 << 20;
constexpr mode_t kPrivate = 0600;

/// "defaults write" makes texts of what it is given without a type, and the Mac's getters read them.
bool truthOf(const plist::Value& value) {
    if (const auto truth = value.asBool())
        return *truth;
    const std::string* text = value.asString();
    if (!text || text->empty())
        return false;
    const char first = text->front();
    return first == 'Y' || first == 'y' || first == 'T' || first == 't' || (first >= '1' && first <= '9');
}

std::uint64_t numberOf(const plist::Value& value) {
    if (const auto number = value.asUnsigned())
        return *number;
    if (const auto real = value.asDouble(); real && *real >= 0 && *real < 0x1p64)
        return static_cast<std::uint64_t>(*real);
    std::uint64_t number = 0;
    if (const std::string* text = value.asString())
        std::from_chars(text->data(), text->data() + text->size(), number);
    return number;
}

std::uint64_t sumOf(std::uint64_t number, std::uint64_t delta) {
    constexpr auto kMost = std::numeric_limits<std::uint64_t>::max();
    return number > kMost - delta ? kMost : number + delta;
}

std::string timeStamp() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    gmtime_r(&now, &parts);
    char text[32];
    return {text, std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", &parts)};
}

} // namespace

UserDefaults::UserDefaults(FileManager& fileManager, std::string path, SystemLog& log)
    : m_fileManager(fileManager), m_path(std::move(path)), m_log(log) {
    if (auto values = readFile())
        m_values = *std::move(values);
    else
        m_log.log("Failed to read preferences: " + values.error().message());
}

void UserDefaults::apply(const std::string& key, const Change& change, plist::Dictionary& values) {
    if (const auto* value = std::get_if<plist::Value>(&change)) {
        values.set(key, *value);
    } else if (const auto* addition = std::get_if<Addition>(&change)) {
        const plist::Value* old = values.find(key);
        values.set(key, sumOf(old ? numberOf(*old) : 0, addition->delta));
    } else {
        values.remove(key);
    }
}

void UserDefaults::record(std::string_view key, Change change) {
    if (m_held.contains(key))
        return;
    const std::string name(key);
    apply(name, change, m_values);
    m_changes.insert_or_assign(name, std::move(change));
}

void UserDefaults::setObject(std::string_view key, plist::Value value) {
    const std::lock_guard lock(m_mutex);
    record(key, std::move(value));
}

void UserDefaults::removeObject(std::string_view key) {
    const std::lock_guard lock(m_mutex);
    record(key, Removal{});
}

void UserDefaults::addToUnsigned(std::string_view key, std::uint64_t delta) {
    const std::lock_guard lock(m_mutex);
    const auto pending = m_changes.find(key);
    if (pending == m_changes.end()) {
        record(key, Addition{delta});
    } else if (auto* addition = std::get_if<Addition>(&pending->second)) {
        addition->delta = sumOf(addition->delta, delta);
        apply(pending->first, Addition{delta}, m_values);
    } else {
        // Set or removed here before: the sum no longer depends on the disk.
        const plist::Value* old = m_values.find(key);
        record(key, plist::Value(sumOf(old ? numberOf(*old) : 0, delta)));
    }
}

void UserDefaults::hold(std::string_view key, plist::Value value) {
    const std::lock_guard lock(m_mutex);
    m_held.insert_or_assign(std::string(key), std::move(value));
}

Result<void> UserDefaults::synchronize() {
    const std::lock_guard lock(m_mutex);
    if (m_changes.empty()) {
        if (auto values = readFile())
            m_values = *std::move(values);
        return {};
    }
    Result<void> result = writeChanges();
    if (!result && !m_failureWasLogged)
        m_log.log("Failed to write preferences: " + result.error().message());
    m_failureWasLogged = !result;
    return result;
}

std::optional<plist::Value> UserDefaults::objectForKey(std::string_view key) const {
    const std::lock_guard lock(m_mutex);
    const auto held = m_held.find(key);
    const plist::Value* value = held != m_held.end() ? &held->second : m_values.find(key);
    return value ? std::optional(*value) : std::nullopt;
}

bool UserDefaults::boolForKey(std::string_view key) const {
    const auto value = objectForKey(key);
    return value && truthOf(*value);
}

std::uint64_t UserDefaults::unsignedForKey(std::string_view key) const {
    const auto value = objectForKey(key);
    return value ? numberOf(*value) : 0;
}

std::optional<std::string> UserDefaults::stringForKey(std::string_view key) const {
    const auto value = objectForKey(key);
    const std::string* text = value ? value->asString() : nullptr;
    return text ? std::optional(*text) : std::nullopt;
}

Result<plist::Dictionary> UserDefaults::readFile() const {
    const auto bytes = m_fileManager.contentsAtPath(m_path, kLargestFile);
    if (!bytes && bytes.error().kind == ErrorKind::NotFound)
        return plist::Dictionary();
    if (!bytes)
        return Failure(bytes.error());
    const auto list = plist::parse(*bytes);
    if (!list)
        return Failure(Error{ErrorKind::Damaged, m_path, list.error()});
    if (const plist::Dictionary* values = list->asDictionary())
        return *values;
    return Failure(Error{ErrorKind::Damaged, m_path, "not a dictionary"});
}

Result<void> UserDefaults::writeChanges() {
    const std::string folder = m_path.substr(0, m_path.rfind('/'));
    if (auto made = m_fileManager.createDirectoryAtPath(folder); !made)
        return made;
    const auto fileLock = FileLock::acquire(m_fileManager, m_path);
    if (!fileLock)
        return Failure(fileLock.error());

    auto onDisk = readFile();
    const bool isDamaged = !onDisk && onDisk.error().kind == ErrorKind::Damaged;
    if (!onDisk && !isDamaged)
        return Failure(onDisk.error());
    plist::Dictionary values = isDamaged ? plist::Dictionary() : *onDisk;
    for (const auto& [key, change] : m_changes)
        apply(key, change, values);

    if (isDamaged)
        if (auto moved = setDamagedFileAside(onDisk.error().reason); !moved)
            return moved;
    if (isDamaged || values != *onDisk)
        if (auto written = m_fileManager.writeAtomically(m_path, plist::writeBinary(values), kPrivate); !written)
            return written;
    m_values = std::move(values);
    m_changes.clear();
    return {};
}

Result<void> UserDefaults::setDamagedFileAside(const std::string& reason) {
    const std::string stem = m_path + ".damaged-" + timeStamp();
    for (int attempt = 1;; ++attempt) {
        const std::string aside = attempt == 1 ? stem : stem + "-" + std::to_string(attempt);
        auto moved = m_fileManager.moveItemAtPath(m_path, aside);
        if (moved)
            m_log.log("Preferences " + m_path + " are damaged (" + reason + ") and were set aside as " + aside);
        else if (moved.error().kind == ErrorKind::AlreadyExists && attempt < 100)
            continue;
        return moved;
    }
}

} // namespace sweeply
