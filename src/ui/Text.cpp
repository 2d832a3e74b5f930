#include "ui/Text.h"

#include "platform/Localization.h"

namespace sweeply {

QString shown(std::string_view text) {
    QString result = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    for (QChar& character : result) {
        const bool turnsText = character.unicode() >= 0x202A && character.unicode() <= 0x202E;
        if (character.category() == QChar::Other_Control || turnsText)
            character = QChar::ReplacementCharacter;
    }
    return result;
}

QString localized(std::string_view key) { return QString::fromStdString(localizedString(key)); }

QString localizedTitle(std::string_view key) { return QString::fromStdString(localizedButton(key)); }

std::string utf8(const QString& text) { return text.toStdString(); }

} // namespace sweeply
