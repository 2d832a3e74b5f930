#include "appcore/NameMatcher.h"

#include <re2/re2.h>

namespace sweeply {

namespace {

constexpr std::int64_t kMemoryLimit = std::int64_t{64} << 20U;

void addAlternatives(std::string& pattern, std::string_view anchor, const std::vector<std::string>& texts) {
    for (const auto& text : texts) {
        if (text.empty())
            continue;
        pattern += pattern.empty() ? "" : "|";
        pattern += anchor;
        pattern += RE2::QuoteMeta(text);
    }
}

} // namespace

NameMatcher::NameMatcher(const std::vector<std::string>& anywhere, const std::vector<std::string>& atBeginning) {
    std::string pattern;
    addAlternatives(pattern, "", anywhere);
    addAlternatives(pattern, "\\A", atBeginning);
    if (pattern.empty())
        return;
    RE2::Options options;
    options.set_encoding(RE2::Options::EncodingLatin1); // bytes
    options.set_log_errors(false);
    options.set_max_mem(kMemoryLimit);
    m_expression = std::make_unique<const RE2>(pattern, options);
}

NameMatcher::~NameMatcher() = default;

bool NameMatcher::matches(std::string_view name) const {
    if (!m_expression)
        return false;
    // Names that are too many to be told apart belong to everything: nothing is removed because of it.
    return !m_expression->ok() || RE2::PartialMatch(re2::StringPiece(name.data(), name.size()), *m_expression);
}

} // namespace sweeply
