#include "formats/PropertyList.h"

#include "formats/Utf8.h"

#include <bit>
#include <cstdlib>
#include <memory>
#include <plist/plist.h>

namespace sweeply::plist {

namespace {

struct FreeNode {
    void operator()(void* node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, FreeNode>;

std::string bigEndian(std::uint64_t number) {
    std::string bytes;
    for (int shift = 56; shift >= 0; shift -= 8)
        bytes += static_cast<char>(number >> shift & 0xFF);
    return bytes;
}

/// The library's node for one number as a binary list holds it: the only way to its full range.
Node nodeFromWritten(const std::string& object) {
    const std::string header = "bplist00";
    std::string bytes = header + object + static_cast<char>(header.size());
    const std::uint64_t offsetTable = bytes.size() - 1;
    bytes += std::string(6, '\0') + "\1\1" + bigEndian(1) + bigEndian(0) + bigEndian(offsetTable);
    plist_t node = nullptr;
    plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &node);
    return Node(node);
}

struct NodeMaker {
    Node operator()(const Dictionary& dictionary) const {
        Node node(plist_new_dict());
        for (const auto& [key, value] : dictionary.members())
            plist_dict_set_item(node.get(), validUtf8(key).c_str(), std::visit(*this, value.storage()).release());
        return node;
    }
    Node operator()(const Array& array) const {
        Node node(plist_new_array());
        for (const Value& value : array)
            plist_array_append_item(node.get(), std::visit(*this, value.storage()).release());
        return node;
    }
    Node operator()(const std::string& text) const { return Node(plist_new_string(validUtf8(text).c_str())); }
    Node operator()(bool truth) const { return Node(plist_new_bool(truth ? 1 : 0)); }
    Node operator()(std::int64_t number) const { return Node(plist_new_uint(static_cast<std::uint64_t>(number))); }
    Node operator()(std::uint64_t number) const { return nodeFromWritten("\x14" + bigEndian(0) + bigEndian(number)); }
    Node operator()(double number) const { return Node(plist_new_real(number)); }
    Node operator()(const Data& data) const { return Node(plist_new_data(data.bytes.data(), data.bytes.size())); }
    Node operator()(Date date) const {
        return nodeFromWritten("\x33" + bigEndian(std::bit_cast<std::uint64_t>(date.seconds)));
    }
    Node operator()(Uid uid) const { return Node(plist_new_uid(uid.index)); }
};

std::string write(const Value& value, void (*writer)(plist_t, char**, std::uint32_t*)) {
    const Node node = std::visit(NodeMaker{}, value.storage());
    char* bytes = nullptr;
    std::uint32_t length = 0;
    writer(node.get(), &bytes, &length);
    std::string result(bytes ? bytes : "", length);
    std::free(bytes);
    return result;
}

} // namespace

std::string writeBinary(const Value& value) { return write(value, plist_to_bin); }

std::string writeXml(const Value& value) { return write(value, plist_to_xml); }

} // namespace sweeply::plist
