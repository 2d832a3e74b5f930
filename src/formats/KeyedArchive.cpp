#include "formats/KeyedArchive.h"

#include <algorithm>
#include <utility>

namespace sweeply {

namespace {

constexpr std::int64_t kVersion = 100000;
constexpr const char* kArchiver = "NSKeyedArchiver";

plist::Array arrayOfUids(const std::vector<plist::Uid>& uids) { return {uids.begin(), uids.end()}; }

} // namespace

tl::expected<KeyedArchive, std::string> KeyedArchive::parse(std::string_view bytes) {
    auto archive = plist::parse(bytes);
    if (!archive)
        return tl::unexpected(archive.error());
    const auto* objects = archive->find("$objects");
    if (!objects || !objects->asArray() || !archive->find("$top"))
        return tl::unexpected(std::string("no keyed archive"));
    return KeyedArchive(*std::move(archive));
}

const plist::Array& KeyedArchive::objects() const { return *m_archive.find("$objects")->asArray(); }

const plist::Value* KeyedArchive::root() const { return member(*m_archive.find("$top"), "root"); }

const plist::Value* KeyedArchive::object(const plist::Value* value) const {
    const auto uid = value ? value->asUid() : std::nullopt;
    if (!uid)
        return value;
    return uid->index == 0 || uid->index >= objects().size() ? nullptr : &objects()[uid->index];
}

const plist::Value* KeyedArchive::member(const plist::Value& object, std::string_view key) const {
    return this->object(object.find(key));
}

std::vector<const plist::Value*> KeyedArchive::elements(const plist::Value* array) const {
    std::vector<const plist::Value*> found;
    const auto* list = array ? array->find("NS.objects") : nullptr;
    if (!list || !list->asArray())
        return found;
    for (const auto& element : *list->asArray())
        found.push_back(object(&element));
    return found;
}

const plist::Value* KeyedArchive::valueForKey(const plist::Value* dictionary, std::string_view key) const {
    const auto* keys = dictionary ? dictionary->find("NS.keys") : nullptr;
    const auto* values = dictionary ? dictionary->find("NS.objects") : nullptr;
    if (!keys || !values || !keys->asArray() || !values->asArray())
        return nullptr;
    for (std::size_t i = 0; i < std::min(keys->asArray()->size(), values->asArray()->size()); ++i) {
        const auto* name = object(&(*keys->asArray())[i]);
        if (name && name->asString() && *name->asString() == key)
            return object(&(*values->asArray())[i]);
    }
    return nullptr;
}

plist::Uid KeyedArchiveWriter::add(plist::Value value) {
    m_objects.push_back(std::move(value));
    return plist::Uid{m_objects.size() - 1};
}

plist::Uid KeyedArchiveWriter::classNamed(const std::string& name, const std::vector<std::string>& chain) {
    const auto known = std::ranges::find(m_classes, name, &std::pair<std::string, plist::Uid>::first);
    if (known != m_classes.end())
        return known->second;
    const auto uid = add(plist::Dictionary({{"$classname", name}, {"$classes", plist::arrayOf(chain)}}));
    m_classes.emplace_back(name, uid);
    return uid;
}

plist::Uid KeyedArchiveWriter::addText(const std::string& text) { return add(text); }

plist::Uid KeyedArchiveWriter::addArray(const std::vector<plist::Uid>& elements) {
    const auto type = classNamed("NSArray", {"NSArray", "NSObject"});
    return add(plist::Dictionary({{"NS.objects", arrayOfUids(elements)}, {"$class", type}}));
}

plist::Uid KeyedArchiveWriter::addDictionary(const std::vector<plist::Uid>& keys,
                                             const std::vector<plist::Uid>& values) {
    const auto type = classNamed("NSDictionary", {"NSDictionary", "NSObject"});
    return add(
        plist::Dictionary({{"NS.keys", arrayOfUids(keys)}, {"NS.objects", arrayOfUids(values)}, {"$class", type}}));
}

plist::Uid KeyedArchiveWriter::addObject(const std::string& className, std::vector<plist::Dictionary::Member> members) {
    members.emplace_back("$class", classNamed(className, {className, "NSObject"}));
    return add(plist::Dictionary(std::move(members)));
}

std::string KeyedArchiveWriter::finish(plist::Uid root) const {
    return plist::writeBinary(
        plist::Dictionary({{"$archiver", kArchiver},
                           {"$objects", m_objects},
                           {"$top", plist::Dictionary(std::vector<plist::Dictionary::Member>{{"root", root}})},
                           {"$version", kVersion}}));
}

} // namespace sweeply
