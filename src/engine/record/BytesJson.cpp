#include "engine/record/BytesJson.h"

#include "formats/Utf8.h"

#include <nlohmann/json.hpp>
#include <stdexcept>

namespace sweeply {

namespace {

constexpr std::string_view kDigits = "0123456789abcdef";

unsigned valueOf(char digit) {
    const auto value = kDigits.find(digit);
    if (value == std::string_view::npos)
        throw std::invalid_argument("\"hex\" has something else than digits from 0 to f");
    return static_cast<unsigned>(value);
}

} // namespace

nlohmann::ordered_json bytesJson(std::string_view text) {
    if (validUtf8(text) == text)
        return std::string(text);
    std::string hex;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        hex += {kDigits[byte >> 4U], kDigits[byte & 15U]};
    }
    return {{"hex", hex}};
}

std::string bytesIn(const nlohmann::ordered_json& json) {
    if (json.is_string())
        return json.get<std::string>();
    const auto hex = json.is_object() && json.size() == 1 ? json.find("hex") : json.end();
    if (hex == json.end() || !hex->is_string())
        throw std::invalid_argument("neither a text nor {\"hex\": TEXT}");
    const auto& digits = hex->get_ref<const std::string&>();
    if (digits.size() % 2 != 0)
        throw std::invalid_argument("\"hex\" has half a byte");
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2)
        bytes += static_cast<char>(valueOf(digits[i]) << 4U | valueOf(digits[i + 1]));
    return bytes;
}

} // namespace sweeply
