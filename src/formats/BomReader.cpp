#include "formats/BomReader.h"

#include "formats/BomStore.h"
#include "formats/ByteReader.h"

#include <algorithm>
#include <bit>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace sweeply::bom {

namespace {

using Flaw = tl::unexpected<std::string>;
using BlockNumber = std::uint32_t;

constexpr int kDeepestTree = 64;
constexpr std::size_t kPairSize = 8;
/// In bytes. No file system has longer ones.
constexpr std::size_t kLongestName = 1024;
constexpr std::size_t kLongestPath = 16 * 1024;

/// The numbered blocks of a store.
class Store final {
  public:
    static tl::expected<Store, std::string> open(std::string_view bytes) {
        const ByteReader in(bytes, std::endian::big);
        if (!bytes.starts_with(kStoreMagic))
            return Flaw("no bill of materials");
        const auto index = in.u32(16);
        const auto names = in.u32(24);
        const auto count = index ? in.u32(*index) : std::nullopt;
        if (!names || !count || !in.bytes(std::uint64_t{*index} + 4, std::uint64_t{*count} * 8))
            return Flaw("the table of its blocks lies beyond its end");
        return Store(in, *index, *count, *names);
    }

    [[nodiscard]] std::optional<std::string_view> block(BlockNumber number) const {
        if (number == 0 || number >= m_count)
            return std::nullopt;
        const std::uint64_t row = std::uint64_t{m_index} + 4 + std::uint64_t{number} * 8;
        return m_bytes.bytes(*m_bytes.u32(row), *m_bytes.u32(row + 4));
    }
    [[nodiscard]] BlockNumber count() const { return m_count; }
    /// In bytes.
    [[nodiscard]] std::size_t size() const { return m_bytes.size(); }

    [[nodiscard]] std::optional<std::string_view> named(std::string_view name) const {
        const auto count = m_bytes.u32(m_names);
        std::uint64_t at = std::uint64_t{m_names} + 4;
        for (std::uint32_t i = 0; count && i < *count; ++i) {
            const auto number = m_bytes.u32(at);
            const auto length = m_bytes.u8(at + 4);
            const auto found = length ? m_bytes.bytes(at + 5, *length) : std::nullopt;
            if (!number || !found)
                return std::nullopt;
            if (*found == name)
                return block(*number);
            at += 5 + std::uint64_t{*length};
        }
        return std::nullopt;
    }

  private:
    Store(ByteReader bytes, std::uint32_t index, std::uint32_t count, std::uint32_t names)
        : m_bytes(bytes), m_index(index), m_count(count), m_names(names) {}

    ByteReader m_bytes;
    std::uint32_t m_index;
    std::uint32_t m_count;
    std::uint32_t m_names;
};

/// One path as it is stored.
struct Record {
    std::uint32_t number = 0;
    std::uint32_t parent = 0; ///< number of the folder's record; 0 at the top
    std::string_view name;
    std::string_view attributes;
};

class Reader final {
  public:
    explicit Reader(const Store& store) : m_store(store) {}

    tl::expected<void, std::string> readRecords() {
        auto leaf = firstLeaf();
        if (!leaf)
            return Flaw(leaf.error());
        // Each leaf is a block of its own, so that more steps than blocks are a circle; and leaves that share their
        // pairs would make a small file a list without end.
        std::uint64_t pairs = 0;
        for (BlockNumber steps = 0; *leaf != 0; ++steps) {
            const auto bytes = m_store.block(*leaf);
            if (!bytes || steps >= m_store.count())
                return Flaw("its tree of paths is damaged");
            const ByteReader in(*bytes, std::endian::big);
            const auto count = in.u16(2);
            const auto next = in.u32(4);
            if (!count || !next || in.u16(0) != 1 || (pairs += *count) > m_store.size() / kPairSize)
                return Flaw("its tree of paths is damaged");
            for (std::uint64_t i = 0; i < *count; ++i)
                addRecord(in.u32(12 + i * kPairSize), in.u32(16 + i * kPairSize));
            *leaf = *next;
        }
        return {};
    }

    LeftOut visitAll(const std::function<void(const Entry&)>& visit) {
        // The stored order is kept among the entries of one folder.
        std::ranges::stable_sort(m_records, {}, &Record::parent);
        std::unordered_map<std::uint32_t, std::size_t> firstChild;
        firstChild.reserve(m_records.size());
        for (std::size_t i = m_records.size(); i-- > 0;)
            firstChild[m_records[i].parent] = i;
        // What was not reached lies below something left out, or in itself.
        leaveOut(m_records.size() - walk(firstChild, visit), "a path lies in a folder that is not listed");
        return m_leftOut;
    }

  private:
    struct Level {
        std::size_t next; ///< record to look at
        std::uint32_t parent;
        std::size_t pathLength; ///< of the folder
    };

    tl::expected<BlockNumber, std::string> firstLeaf() const {
        const auto tree = m_store.named("Paths");
        if (!tree || !tree->starts_with(kTreeMagic))
            return Flaw("it has no tree of paths");
        auto node = ByteReader(*tree, std::endian::big).u32(8);
        for (int depth = 0; node && depth < kDeepestTree; ++depth) {
            const auto bytes = m_store.block(*node);
            if (!bytes)
                break;
            const ByteReader in(*bytes, std::endian::big);
            if (in.u16(0) == 1)
                return *node;
            node = in.u32(12);
        }
        return Flaw("its tree of paths is damaged");
    }

    void leaveOut(std::size_t count, const char* reason) {
        if (count != 0 && m_leftOut.count == 0)
            m_leftOut.reason = reason;
        m_leftOut.count += count;
    }

    void addRecord(std::optional<BlockNumber> info, std::optional<BlockNumber> file) {
        const auto infoBytes = info ? m_store.block(*info) : std::nullopt;
        const auto fileBytes = file ? m_store.block(*file) : std::nullopt;
        if (!infoBytes || !fileBytes)
            return leaveOut(1, "a path's record is missing");
        const ByteReader infoIn(*infoBytes, std::endian::big);
        const ByteReader fileIn(*fileBytes, std::endian::big);
        const auto number = infoIn.u32(0);
        const auto attributes = infoIn.u32(4);
        const auto parent = fileIn.u32(0);
        const auto attributesBytes = attributes ? m_store.block(*attributes) : std::nullopt;
        if (!number || *number == 0 || !parent || !attributesBytes)
            return leaveOut(1, "a path's record is damaged");
        const auto rest = fileBytes->substr(4, kLongestName + 1);
        const auto name = rest.substr(0, rest.find('\0'));
        const bool isTop = *parent == 0 && name == ".";
        const bool isName = !name.empty() && name.size() <= kLongestName && name != "." && name != ".." &&
                            name.find('/') == std::string_view::npos;
        if (!isTop && !isName)
            return leaveOut(1, "a path has a name that no file can have");
        // What is in a folder must not be walked once for each that claims to be it.
        if (!m_numbers.insert(*number).second)
            return leaveOut(1, "two paths have the same number");
        m_records.push_back({*number, *parent, name, *attributesBytes});
    }

    /// Hands the entries on, each once, and counts them. A folder that is its own parent is never reached.
    std::size_t walk(const std::unordered_map<std::uint32_t, std::size_t>& firstChild,
                     const std::function<void(const Entry&)>& visit) const {
        Entry entry;
        std::string path;
        std::size_t visited = 0;
        std::vector<Level> levels;
        if (const auto top = firstChild.find(0); top != firstChild.end())
            levels.push_back({top->second, 0, 0});
        while (!levels.empty()) {
            Level& level = levels.back();
            if (level.next >= m_records.size() || m_records[level.next].parent != level.parent) {
                levels.pop_back();
                continue;
            }
            const Record& record = m_records[level.next++];
            path.resize(level.pathLength);
            const bool isTop = record.parent == 0 && record.name == ".";
            if (!path.empty())
                path += '/';
            if (!isTop)
                path += record.name;
            if (path.size() > kLongestPath)
                continue;
            ++visited;
            entry.path = isTop ? "." : path;
            fill(entry, record.attributes);
            visit(entry);
            if (const auto child = firstChild.find(record.number); child != firstChild.end())
                levels.push_back({child->second, record.number, path.size()});
        }
        return visited;
    }

    static void fill(Entry& entry, std::string_view attributes) {
        const ByteReader in(attributes, std::endian::big);
        const auto type = in.u8(0).value_or(1);
        entry.type = type >= 1 && type <= 4 ? static_cast<EntryType>(type) : EntryType::File;
        entry.mode = in.u16(4).value_or(0);
        entry.owner = in.u32(6).value_or(0);
        entry.group = in.u32(10).value_or(0);
        entry.modified = in.u32(14).value_or(0);
        entry.size = in.u32(18).value_or(0);
        entry.checksum = 0;
        entry.device = 0;
        entry.linkTarget.clear();
        const auto extra = in.u32(23).value_or(0);
        if (entry.type == EntryType::Device)
            entry.device = extra;
        else if (entry.type != EntryType::Directory)
            entry.checksum = extra;
        if (entry.type == EntryType::SymbolicLink) {
            const auto target = in.bytes(31, in.u32(27).value_or(0)).value_or(std::string_view());
            entry.linkTarget = target.substr(0, target.find('\0'));
        }
    }

    const Store& m_store;
    std::vector<Record> m_records;
    std::unordered_set<std::uint32_t> m_numbers; ///< of all records
    LeftOut m_leftOut;
};

} // namespace

std::string describe(const LeftOut& leftOut) {
    if (leftOut.count == 0)
        return {};
    return std::to_string(leftOut.count) + (leftOut.count == 1 ? " of its entries is" : " of its entries are") +
           " left out: " + leftOut.reason;
}

tl::expected<LeftOut, std::string> read(std::string_view bytes, const std::function<void(const Entry&)>& visit) {
    const auto store = Store::open(bytes);
    if (!store)
        return Flaw(store.error());
    Reader reader(*store);
    if (auto records = reader.readRecords(); !records)
        return Flaw(records.error());
    return reader.visitAll(visit);
}

} // namespace sweeply::bom
