#include "cli/JsonPrinter.h"

#include "engine/record/RunRecord.h"
#include "engine/tree/Node.h"
#include "formats/Utf8.h"

#include <array>
#include <charconv>
#include <concepts>
#include <cstring>
#include <nlohmann/json.hpp>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

namespace sweeply {

namespace {

constexpr std::size_t kBufferSize = std::size_t{64} << 10U;
constexpr std::size_t kIndent = 2;

struct TreeReference {
    const Node* node;
    SizeUnits units;
};

TreeReference referenceIn(const Json& json) {
    TreeReference reference{};
    std::memcpy(&reference, json.get_binary().data(), sizeof reference);
    return reference;
}

class Printer final {
  public:
    Printer(std::ostream& output, JsonLayout layout) : m_output(output), m_isIndented(layout == JsonLayout::Indented) {}
    Printer(const Printer&) = delete;
    Printer& operator=(const Printer&) = delete;
    ~Printer() { flush(); }

    void print(const Json& json) {
        if (json.is_object()) {
            open('{');
            for (const auto& [key, value] : json.items()) {
                member(key);
                print(value);
            }
            close('}');
        } else if (json.is_array()) {
            open('[');
            for (const auto& value : json) {
                element();
                print(value);
            }
            close(']');
        } else if (json.is_binary()) {
            const auto [node, units] = referenceIn(json);
            print(*node, units);
        } else {
            m_text += json.dump();
        }
    }

  private:
    void print(const Node& node, SizeUnits units) {
        open('{');
        member("name", validUtf8(node.name()));
        member("path");
        if (node.path().empty())
            m_text += "null";
        else
            string(validUtf8(node.path()));
        member("size", node.longSize());
        member("sizeText", stringSizeFromLong(node.longSize(), units));
        member("count", node.count());
        member("state", static_cast<int>(node.state()));
        member("enabled");
        m_text += node.ifEnabled() ? "true" : "false";
        member("type", static_cast<int>(node.type()));
        member("why");
        evidence(node.evidence());
        member("children");
        print(node.children(), units);
        member("invisibleChildren");
        print(node.invisibleChildren(), units);
        close('}');
        if (m_text.size() > kBufferSize)
            flush();
    }

    void print(const std::vector<Node::Pointer>& nodes, SizeUnits units) {
        open('[');
        for (const auto& node : nodes) {
            element();
            print(*node, units);
        }
        close(']');
    }

    /// Most of a list has the same one.
    void evidence(const Evidence* evidence) {
        if (evidence != m_evidence || m_depth != m_evidenceDepth) {
            std::string before = std::exchange(m_text, {});
            print(evidence ? Json::parse(evidenceText(evidence)) : Json(nullptr));
            m_evidenceText = std::exchange(m_text, std::move(before));
            m_evidence = evidence;
            m_evidenceDepth = m_depth;
        }
        m_text += m_evidenceText;
    }

    void open(char bracket) {
        m_text += bracket;
        ++m_depth;
        m_isFirst = true;
    }

    void close(char bracket) {
        --m_depth;
        if (!std::exchange(m_isFirst, false))
            newLine();
        m_text += bracket;
    }

    void element() {
        if (!std::exchange(m_isFirst, false))
            m_text += ',';
        newLine();
    }

    void newLine() {
        if (m_isIndented)
            m_text.append(1, '\n').append(m_depth * kIndent, ' ');
    }

    void member(std::string_view key) {
        element();
        string(key);
        m_text += m_isIndented ? ": " : ":";
    }
    void member(std::string_view key, std::string_view value) {
        member(key);
        string(value);
    }
    template<std::integral Number>
    void member(std::string_view key, Number value) {
        member(key);
        std::array<char, 24> digits;
        m_text.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
    }

    void string(std::string_view text) {
        m_text += '"';
        std::size_t plain = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            const char character = text[i];
            if (static_cast<unsigned char>(character) >= 0x20 && character != '"' && character != '\\')
                continue;
            m_text += text.substr(plain, i - plain);
            plain = i + 1;
            const std::string quoted = Json(std::string(1, character)).dump();
            m_text.append(quoted, 1, quoted.size() - 2);
        }
        m_text += text.substr(plain);
        m_text += '"';
    }

    void flush() {
        m_output << m_text;
        m_text.clear();
    }

    std::ostream& m_output;
    const bool m_isIndented;
    std::string m_text; ///< not yet handed on
    std::size_t m_depth = 0;
    bool m_isFirst = false; ///< in the array or object that is open
    const Evidence* m_evidence = nullptr;
    std::size_t m_evidenceDepth = 0; ///< 0 for no m_evidenceText
    std::string m_evidenceText;
};

} // namespace

Json treeReference(const Node& node, SizeUnits units) {
    const TreeReference reference{&node, units};
    Json::binary_t::container_type bytes(sizeof reference);
    std::memcpy(bytes.data(), &reference, sizeof reference);
    return Json::binary(std::move(bytes));
}

void writeJson(std::ostream& output, const Json& json, JsonLayout layout) { Printer(output, layout).print(json); }

Json withTrees(const Json& json) {
    std::ostringstream text;
    writeJson(text, json, JsonLayout::OneLine);
    return Json::parse(std::move(text).str());
}

} // namespace sweeply
