#pragma once

#include <QString>

class QScrollArea;
class QWidget;

namespace sweeply {

/// What does not fit is reached by scrolling, with the keyboard as well. The area owns `content`, and is called `name`
/// for those who cannot see it.
[[nodiscard]] QScrollArea* scrolled(QWidget* content, const QString& name);

} // namespace sweeply
