#include "platform/Locale.h"

#include <array>
#include <locale.h>

namespace sweeply {

namespace {

locale_t open(const std::string& name) {
    const locale_t locale = newlocale(LC_TIME_MASK | LC_CTYPE_MASK, name.c_str(), nullptr);
    return locale ? locale : newlocale(LC_ALL_MASK, "C", nullptr);
}

} // namespace

Locale::Locale(const std::string& name) : m_locale(open(name)) {}

Locale::~Locale() { freelocale(m_locale); }

std::string Locale::format(const char* pattern, std::time_t time) const {
    std::tm parts{};
    if (!localtime_r(&time, &parts))
        return {};
    std::array<char, 256> text;
    return {text.data(), strftime_l(text.data(), text.size(), pattern, &parts, m_locale)};
}

std::string Locale::formatDate(std::time_t time) const { return format("%B %e, %Y", time); }

std::string Locale::formatDateAndTime(std::time_t time) const { return format("%b %e, %Y %X", time); }

} // namespace sweeply
