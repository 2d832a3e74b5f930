#pragma once

#include <ctime>
#include <string>

namespace sweeply {

/// How people of one language and country write dates. Immutable, so usable from any thread.
class Locale final {
  public:
    /// `name` as the host knows it ("de_DE.UTF-8"); empty for the process's environment. One that the host does not
    /// have writes English.
    explicit Locale(const std::string& name);
    ~Locale();
    Locale(const Locale&) = delete;
    Locale& operator=(const Locale&) = delete;

    /// The day of `time` in the host's time zone, as "%B %e, %Y": "March  7, 2009".
    [[nodiscard]] std::string formatDate(std::time_t time) const;

    /// The day and the time: "Mar  7, 2009 14:05:09", or as the language writes them.
    [[nodiscard]] std::string formatDateAndTime(std::time_t time) const;

  private:
    [[nodiscard]] std::string format(const char* pattern, std::time_t time) const;

    locale_t m_locale;
};

} // namespace sweeply
