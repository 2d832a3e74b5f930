#include "formats/PropertyList.h"
#include "formats/PropertyListGuard.h"

#include <bit>
#include <cstdlib>
#include <limits>
#include <memory>
#include <plist/plist.h>

namespace sweeply::plist {

namespace {

constexpr std::size_t kBinaryHeaderSize = 8;

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
struct FreeNode {
    void operator()(void* node) const { plist_free(node); }
};

/// One number as the library would write it, marker first: the only way to its full range.
std::string numberAsWritten(plist_t node) {
    char* bytes = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(node, &bytes, &length);
    const std::unique_ptr<char, Free> owner(bytes);
    return length > kBinaryHeaderSize ? std::string(bytes + kBinaryHeaderSize, length - kBinaryHeaderSize) : "";
}

Value integer(plist_t node) {
    constexpr char kUnsignedMarker = 0x14;
    std::uint64_t number = 0;
    plist_get_uint_val(node, &number);
    // The library keeps negative numbers as their two's complement and has no question for the sign.
    if (!std::in_range<std::int64_t>(number) && !numberAsWritten(node).starts_with(kUnsignedMarker))
        return Value(static_cast<std::int64_t>(number));
    return Value(number);
}

Value date(plist_t node) {
    constexpr char kDateMarker = 0x33;
    // The library's own getter squeezes the date into 32 bits; "never" and "always" are far beyond.
    const std::string written = numberAsWritten(node);
    if (!written.starts_with(kDateMarker) || written.size() < 9)
        return Value(Date{});
    std::uint64_t bits = 0;
    for (const char byte : written.substr(1, 8))
        bits = bits << 8 | static_cast<std::uint8_t>(byte);
    return Value(Date{std::bit_cast<double>(bits)});
}

Value valueOf(plist_t node);

Value array(plist_t node) {
    plist_array_iter raw = nullptr;
    plist_array_new_iter(node, &raw);
    const std::unique_ptr<void, Free> iterator(raw);
    Array array;
    array.reserve(plist_array_get_size(node));
    for (plist_t item = nullptr;;) {
        plist_array_next_item(node, raw, &item);
        if (!item)
            return Value(std::move(array));
        array.push_back(valueOf(item));
    }
}

Value dictionary(plist_t node) {
    plist_dict_iter raw = nullptr;
    plist_dict_new_iter(node, &raw);
    const std::unique_ptr<void, Free> iterator(raw);
    std::vector<Dictionary::Member> members;
    members.reserve(plist_dict_get_size(node));
    for (;;) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, raw, &key, &item);
        const std::unique_ptr<char, Free> owner(key);
        if (!item)
            return Value(Dictionary(std::move(members)));
        members.emplace_back(key ? key : "", valueOf(item));
    }
}

std::string bytesOf(const char* bytes, std::uint64_t length) { return bytes ? std::string(bytes, length) : ""; }

Value valueOf(plist_t node) {
    std::uint64_t number = 0;
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN:
        return Value(plist_bool_val_is_true(node) != 0);
    case PLIST_UINT:
        return integer(node);
    case PLIST_REAL: {
        double real = 0;
        plist_get_real_val(node, &real);
        return Value(real);
    }
    case PLIST_STRING: {
        const char* text = plist_get_string_ptr(node, &number);
        return Value(bytesOf(text, number));
    }
    case PLIST_KEY: {
        // A key where a value belongs; the library lets it pass in arrays.
        char* text = nullptr;
        plist_get_key_val(node, &text);
        const std::unique_ptr<char, Free> owner(text);
        return Value(text ? text : "");
    }
    case PLIST_ARRAY:
        return array(node);
    case PLIST_DICT:
        return dictionary(node);
    case PLIST_DATE:
        return date(node);
    case PLIST_DATA: {
        const char* bytes = plist_get_data_ptr(node, &number);
        return Value(Data{bytesOf(bytes, number)});
    }
    case PLIST_UID:
        plist_get_uid_val(node, &number);
        return Value(Uid{number});
    case PLIST_NONE:
        break;
    }
    return {};
}

} // namespace

tl::expected<Value, std::string> parse(std::string_view bytes) {
    if (bytes.empty())
        return tl::unexpected<std::string>("empty file");
    if (bytes.size() > std::numeric_limits<std::uint32_t>::max() / 2)
        return tl::unexpected<std::string>("too large for a property list");
    const bool isBinary = bytes.starts_with("bplist0");
    if (std::string reason = isBinary ? reasonAgainstBinary(bytes) : reasonAgainstXml(bytes); !reason.empty())
        return tl::unexpected(std::move(reason));

    plist_t raw = nullptr;
    (isBinary ? plist_from_bin : plist_from_xml)(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &raw);
    const std::unique_ptr<void, FreeNode> root(raw);
    if (!root)
        return tl::unexpected<std::string>(isBinary ? "damaged binary property list" : "not a property list");
    return valueOf(raw);
}

} // namespace sweeply::plist
