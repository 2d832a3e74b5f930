#include "formats/PropertyList.h"

#include <algorithm>

namespace sweeply::plist {

namespace {

auto named(std::string_view key) {
    return [key](const Dictionary::Member& member) { return member.first == key; };
}

} // namespace

Dictionary::Dictionary(std::vector<Member> members) : m_members(std::move(members)) {}

void Dictionary::set(std::string_view key, Value value) {
    const auto found = std::find_if(m_members.begin(), m_members.end(), named(key));
    if (found != m_members.end())
        found->second = std::move(value);
    else
        m_members.emplace_back(key, std::move(value));
}

bool Dictionary::remove(std::string_view key) { return std::erase_if(m_members, named(key)) > 0; }

const Value* Dictionary::find(std::string_view key) const {
    const auto found = std::find_if(m_members.begin(), m_members.end(), named(key));
    return found != m_members.end() ? &found->second : nullptr;
}

bool Dictionary::operator==(const Dictionary& other) const { return m_members == other.m_members; }

bool Value::operator==(const Value& other) const { return m_storage == other.m_storage; }

const Value* Value::find(std::string_view key) const {
    const Dictionary* dictionary = asDictionary();
    return dictionary ? dictionary->find(key) : nullptr;
}

const std::string* Value::findString(std::string_view key) const {
    const Value* value = find(key);
    return value ? value->asString() : nullptr;
}

std::optional<bool> Value::asBool() const {
    if (const bool* truth = std::get_if<bool>(&m_storage))
        return *truth;
    if (const auto number = asSigned())
        return *number != 0;
    if (asUnsigned())
        return true;
    return std::nullopt;
}

std::optional<std::int64_t> Value::asSigned() const {
    const auto* number = std::get_if<std::int64_t>(&m_storage);
    return number ? std::optional(*number) : std::nullopt;
}

std::optional<std::uint64_t> Value::asUnsigned() const {
    if (const auto* number = std::get_if<std::uint64_t>(&m_storage))
        return *number;
    if (const auto number = asSigned(); number && *number >= 0)
        return static_cast<std::uint64_t>(*number);
    return std::nullopt;
}

std::optional<double> Value::asDouble() const {
    if (const double* number = std::get_if<double>(&m_storage))
        return *number;
    if (const auto number = asSigned())
        return static_cast<double>(*number);
    if (const auto number = asUnsigned())
        return static_cast<double>(*number);
    return std::nullopt;
}

std::optional<Uid> Value::asUid() const {
    if (const Uid* uid = std::get_if<Uid>(&m_storage))
        return *uid;
    const Dictionary* dictionary = asDictionary();
    if (!dictionary || dictionary->members().size() != 1)
        return std::nullopt;
    const Value* index = dictionary->find("CF$UID");
    if (const auto number = index ? index->asUnsigned() : std::nullopt)
        return Uid{*number};
    return std::nullopt;
}

std::vector<std::string> textsOf(const Value& list) {
    std::vector<std::string> texts;
    if (const Array* array = list.asArray()) {
        for (const Value& value : *array) {
            if (const auto* text = value.asString())
                texts.push_back(*text);
        }
    }
    return texts;
}

Array arrayOf(const std::vector<std::string>& texts) {
    Array array;
    array.reserve(texts.size());
    for (const auto& text : texts)
        array.emplace_back(text);
    return array;
}

} // namespace sweeply::plist
