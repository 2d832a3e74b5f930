#pragma once

#include "formats/PropertyList.h"

#include <string>
#include <string_view>
#include <tl/expected.hpp>
#include <vector>

namespace sweeply {

/// A keyed archive, as programs on the Mac store their objects: a property list whose objects stand in one table and
/// name each other by their places in it. Reading never follows a circle by itself.
class KeyedArchive final {
  public:
    /// An error says what is wrong.
    [[nodiscard]] static tl::expected<KeyedArchive, std::string> parse(std::string_view bytes);

    /// The object archived as "root"; nullptr without one.
    [[nodiscard]] const plist::Value* root() const;
    /// What `value` names, or the value itself when it names nothing; nullptr for nil and for places beyond the table.
    [[nodiscard]] const plist::Value* object(const plist::Value* value) const;
    /// The member `key` of an object, resolved in the same way.
    [[nodiscard]] const plist::Value* member(const plist::Value& object, std::string_view key) const;
    /// The elements of an archived array, resolved; none for anything else.
    [[nodiscard]] std::vector<const plist::Value*> elements(const plist::Value* array) const;
    /// The value for `key` in an archived dictionary; nullptr without one.
    [[nodiscard]] const plist::Value* valueForKey(const plist::Value* dictionary, std::string_view key) const;

  private:
    explicit KeyedArchive(plist::Value archive) : m_archive(std::move(archive)) {}
    [[nodiscard]] const plist::Array& objects() const;

    plist::Value m_archive;
};

/// Builds one. Objects are added before those that name them.
class KeyedArchiveWriter final {
  public:
    KeyedArchiveWriter() : m_objects{plist::Value("$null")} {}

    static constexpr plist::Uid kNil{0};

    plist::Uid addText(const std::string& text);
    plist::Uid addArray(const std::vector<plist::Uid>& elements);
    plist::Uid addDictionary(const std::vector<plist::Uid>& keys, const std::vector<plist::Uid>& values);
    /// An object of that class, which extends the root class, with its members but for the class.
    plist::Uid addObject(const std::string& className, std::vector<plist::Dictionary::Member> members);

    /// The whole archive with that root, as a binary property list.
    [[nodiscard]] std::string finish(plist::Uid root) const;

  private:
    plist::Uid add(plist::Value value);
    plist::Uid classNamed(const std::string& name, const std::vector<std::string>& chain);

    plist::Array m_objects;
    std::vector<std::pair<std::string, plist::Uid>> m_classes;
};

} // namespace sweeply
