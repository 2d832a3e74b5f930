#include "engine/plan/StrictJson.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace sweeply {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kDeepest = 8;
constexpr std::size_t kMostFields = 100;

/// Looks through a text before anything is made of it.
class Check final : public nlohmann::json_sax<Json> {
  public:
    [[nodiscard]] const std::string& flaw() const { return m_flaw; }

    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t) override { return true; }
    bool number_unsigned(number_unsigned_t) override { return true; }
    bool number_float(number_float_t, const string_t&) override { return true; }
    bool string(string_t&) override { return true; }
    bool binary(binary_t&) override { return true; }
    bool start_object(std::size_t) override { return opens(); }
    bool start_array(std::size_t) override { return opens(); }
    bool end_object() override { return closes(); }
    bool end_array() override { return closes(); }
    bool key(string_t& name) override {
        auto& names = m_open.back();
        if (std::ranges::find(names, name) != names.end())
            return ends("\"" + name + "\": is said twice");
        names.push_back(name);
        return names.size() <= kMostFields || ends("an object has too many fields");
    }
    bool parse_error(std::size_t position, const std::string&, const nlohmann::json::exception& error) override {
        return ends(dynamic_cast<const nlohmann::json::parse_error*>(&error)
                        ? "byte " + std::to_string(position) + " is no JSON, or the file was cut short"
                        : "a number is out of range");
    }

  private:
    bool opens() {
        m_open.emplace_back();
        return m_open.size() <= kDeepest || ends("it is nested too deeply");
    }
    bool closes() {
        m_open.pop_back();
        return true;
    }
    bool ends(std::string flaw) {
        m_flaw = std::move(flaw);
        return false;
    }

    std::vector<std::vector<std::string>> m_open; ///< the fields so far of each object or array around
    std::string m_flaw;
};

} // namespace

Result<Json> strictJson(std::string_view text) {
    Check check;
    if (!Json::sax_parse(text, &check))
        return Failure(Error{ErrorKind::Damaged, {}, check.flaw()});
    return Json::parse(text);
}

} // namespace sweeply
