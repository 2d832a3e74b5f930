#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace sweeply {

/// UTF-8 for Qt. Control characters become visible replacements: a name must not break a line or hide its end.
[[nodiscard]] QString shown(std::string_view text);
/// The translation of a text or of a button's title, for Qt.
[[nodiscard]] QString localized(std::string_view key);
[[nodiscard]] QString localizedTitle(std::string_view key);
[[nodiscard]] std::string utf8(const QString& text);

} // namespace sweeply
