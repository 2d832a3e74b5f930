#include "formats/BillOfMaterials.h"

#include "formats/BomStore.h"
#include "formats/ByteWriter.h"

#include <array>
#include <bit>
#include <map>
#include <tuple>

namespace sweeply::bom {

namespace {

constexpr std::uint32_t kNodeSize = 4096;
constexpr std::uint32_t kSmallNodeSize = 128;
constexpr std::uint16_t kFolderMode = 040755;
constexpr std::uint16_t kAllAttributes = 0xf;

std::string_view parentOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? "." : path.substr(0, slash);
}

std::string_view nameOf(std::string_view path) { return path.substr(path.rfind('/') + 1); }

std::map<std::string, Entry, std::less<>> withFolders(const std::vector<Entry>& entries) {
    std::map<std::string, Entry, std::less<>> all;
    for (const Entry& entry : entries)
        all[entry.path] = entry;
    const auto addFolder = [&all](std::string_view path) {
        Entry folder;
        folder.path = path;
        folder.type = EntryType::Directory;
        folder.mode = kFolderMode;
        return all.try_emplace(std::string(path), std::move(folder)).second;
    };
    addFolder(".");
    for (const Entry& entry : entries) {
        std::string_view folder = parentOf(entry.path);
        while (addFolder(folder))
            folder = parentOf(folder);
    }
    return all;
}

/// Everything about an item but its name.
std::string attributes(const Entry& entry) {
    ByteWriter out(std::endian::big);
    out.u8(static_cast<std::uint8_t>(entry.type));
    out.u8(1);
    out.u16(kAllAttributes);
    out.u16(entry.mode);
    for (std::uint32_t field : {entry.owner, entry.group, entry.modified, entry.size})
        out.u32(field);
    out.u8(1);
    switch (entry.type) {
    case EntryType::File:
        out.u32(entry.checksum);
        break;
    case EntryType::Directory:
        break;
    case EntryType::SymbolicLink:
        out.u32(entry.checksum);
        out.u32(static_cast<std::uint32_t>(entry.linkTarget.size() + 1));
        out.bytes(entry.linkTarget);
        out.u8(0);
        break;
    case EntryType::Device:
        out.u32(entry.device);
        break;
    }
    out.u64(0);
    return out.take();
}

std::string summary(std::uint32_t paths, std::uint32_t totalSize) {
    ByteWriter out(std::endian::big);
    for (std::uint32_t field : {1U, paths, 1U, 0U, 0U, totalSize, 0U}) // one row: the size for any processor
        out.u32(field);
    return out.take();
}

} // namespace

std::uint32_t checksum(std::string_view bytes) {
    static constexpr auto kTable = [] {
        std::array<std::uint32_t, 256> table{};
        for (std::uint32_t i = 0; i < table.size(); ++i) {
            std::uint32_t value = i << 24;
            for (int bit = 0; bit < 8; ++bit)
                value = (value << 1) ^ ((value & 0x80000000) != 0 ? 0x04c11db7U : 0U);
            table[i] = value;
        }
        return table;
    }();
    std::uint32_t crc = 0;
    const auto feed = [&crc](std::uint8_t byte) { crc = (crc << 8) ^ kTable[(crc >> 24) ^ byte]; };
    for (char c : bytes)
        feed(static_cast<std::uint8_t>(c));
    for (std::size_t length = bytes.size(); length != 0; length >>= 8)
        feed(static_cast<std::uint8_t>(length));
    return ~crc;
}

std::string write(const std::vector<Entry>& entries) {
    const auto all = withFolders(entries);
    StoreWriter store;
    std::uint32_t totalSize = 0;
    for (const auto& [path, entry] : all)
        totalSize += entry.type == EntryType::File ? entry.size : 0;
    store.nameBlock("BomInfo", store.addBlock(summary(static_cast<std::uint32_t>(all.size()), totalSize)));

    // Parents have smaller numbers than what is in them: in the map a folder's path stands before those it begins.
    std::map<std::string_view, std::uint32_t> numbers{{".", 1}};
    for (const auto& [path, entry] : all)
        numbers.try_emplace(path, static_cast<std::uint32_t>(numbers.size() + 1));

    // Stored sorted by parent and name, which is how a reader looks a path up.
    std::map<std::pair<std::uint32_t, std::string_view>, const Entry*> sorted;
    for (const auto& [path, entry] : all) {
        const bool isRoot = path == ".";
        sorted[{isRoot ? 0 : numbers.at(parentOf(path)), isRoot ? "." : nameOf(path)}] = &entry;
    }
    std::vector<StoreWriter::Pair> pairs;
    for (const auto& [key, entry] : sorted) {
        ByteWriter info(std::endian::big);
        info.u32(numbers.at(entry->path));
        info.u32(store.addBlock(attributes(*entry)));
        ByteWriter file(std::endian::big);
        file.u32(key.first);
        file.bytes(key.second);
        file.u8(0);
        const auto infoBlock = store.addBlock(info.take());
        pairs.emplace_back(infoBlock, store.addBlock(file.take()));
    }
    store.nameBlock("Paths", store.addTree(pairs, kNodeSize));

    store.nameBlock("HLIndex", store.addTree({}, kNodeSize));
    ByteWriter names(std::endian::big);
    names.u32(1);
    names.u32(store.addTree({}, kSmallNodeSize));
    names.u32(0);
    names.u8(0);
    store.nameBlock("VIndex", store.addBlock(names.take()));
    store.nameBlock("Size64", store.addTree({}, kNodeSize));
    return store.finish();
}

} // namespace sweeply::bom
