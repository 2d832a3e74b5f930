#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tl/expected.hpp>
#include <utility>
#include <variant>
#include <vector>

/// The Mac's property lists, XML and binary.
///
/// A Value is a plain value: copy it, keep it, hand it to another thread. The getters give nothing for another type, so
/// that a caller treats what a stranger wrote there as absent.
namespace sweeply::plist {

class Value;

using Array = std::vector<Value>;

struct Data {
    std::string bytes;
    bool operator==(const Data&) const = default;
};

struct Date {
    double seconds = 0; ///< since the first moment of 2001, UTC
    bool operator==(const Date&) const = default;
};

/// A reference within a keyed archive.
struct Uid {
    std::uint64_t index = 0;
    bool operator==(const Uid&) const = default;
};

/// Keys and values in the order of the file. Looking up is linear: these are small.
class Dictionary final {
  public:
    using Member = std::pair<std::string, Value>;

    Dictionary() = default;
    /// The first one counts where two members have the same key.
    explicit Dictionary(std::vector<Member> members);

    /// Replaces the value of `key` where it stands, or adds it at the end.
    void set(std::string_view key, Value value);
    /// Was there such a key?
    bool remove(std::string_view key);

    [[nodiscard]] const Value* find(std::string_view key) const;
    [[nodiscard]] const std::vector<Member>& members() const { return m_members; }

    bool operator==(const Dictionary& other) const;

  private:
    std::vector<Member> m_members;
};

class Value final {
  public:
    /// An integer is unsigned only when it is beyond the signed range, so that equal numbers compare equal.
    using Storage =
        std::variant<Dictionary, Array, std::string, bool, std::int64_t, std::uint64_t, double, Data, Date, Uid>;

    /// An empty dictionary.
    Value() = default;
    // Implicit, so that a dictionary can be written down with plain values. NOLINTBEGIN(google-explicit-constructor)
    template<typename T>
    requires(std::integral<T> && !std::same_as<T, bool>) Value(T number) {
        if (std::in_range<std::int64_t>(number))
            m_storage = static_cast<std::int64_t>(number);
        else
            m_storage = static_cast<std::uint64_t>(number);
    }
    Value(std::same_as<bool> auto truth) : m_storage(truth) {}
    Value(double number) : m_storage(number) {}
    Value(const char* text) : m_storage(std::string(text)) {}
    Value(std::string_view text) : m_storage(std::string(text)) {}
    Value(std::string text) : m_storage(std::move(text)) {}
    Value(Data data) : m_storage(std::move(data)) {}
    Value(Date date) : m_storage(date) {}
    Value(Uid uid) : m_storage(uid) {}
    Value(Array array) : m_storage(std::move(array)) {}
    Value(Dictionary dictionary) : m_storage(std::move(dictionary)) {}
    // NOLINTEND(google-explicit-constructor)

    /// The value of `key` when this is a dictionary that has it.
    [[nodiscard]] const Value* find(std::string_view key) const;
    /// The text of `key` when this is a dictionary that has one there.
    [[nodiscard]] const std::string* findString(std::string_view key) const;

    [[nodiscard]] const std::string* asString() const { return std::get_if<std::string>(&m_storage); }
    [[nodiscard]] const Data* asData() const { return std::get_if<Data>(&m_storage); }
    [[nodiscard]] const Date* asDate() const { return std::get_if<Date>(&m_storage); }
    [[nodiscard]] const Array* asArray() const { return std::get_if<Array>(&m_storage); }
    [[nodiscard]] const Dictionary* asDictionary() const { return std::get_if<Dictionary>(&m_storage); }
    [[nodiscard]] Array* asArray() { return std::get_if<Array>(&m_storage); }
    [[nodiscard]] Dictionary* asDictionary() { return std::get_if<Dictionary>(&m_storage); }
    /// Also an integer, which many programs write for a truth value.
    [[nodiscard]] std::optional<bool> asBool() const;
    [[nodiscard]] std::optional<std::int64_t> asSigned() const;
    [[nodiscard]] std::optional<std::uint64_t> asUnsigned() const;
    /// Also an integer.
    [[nodiscard]] std::optional<double> asDouble() const;
    /// Also the dictionary with the one key "CF$UID" that stands for it in XML.
    [[nodiscard]] std::optional<Uid> asUid() const;

    [[nodiscard]] const Storage& storage() const { return m_storage; }

    bool operator==(const Value& other) const;

  private:
    Storage m_storage;
};

/// The texts of an array in order; other values in it are passed over, and anything but an array has none.
[[nodiscard]] std::vector<std::string> textsOf(const Value& list);
[[nodiscard]] Array arrayOf(const std::vector<std::string>& texts);

/// Reads either form. What is damaged, nested deeper than 256 levels or made to swell in memory is an error, whose text
/// says why. Texts come as they are in the file: they need not be valid UTF-8.
[[nodiscard]] tl::expected<Value, std::string> parse(std::string_view bytes);

/// Bytes of texts that no property list can hold (invalid UTF-8, NUL) become U+FFFD in both forms; XML also cuts dates
/// to whole seconds.
[[nodiscard]] std::string writeBinary(const Value& value);
[[nodiscard]] std::string writeXml(const Value& value);

} // namespace sweeply::plist
