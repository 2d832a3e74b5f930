#pragma once

#include "engine/tree/Icon.h"

#include <QColor>
#include <QIcon>
#include <cstdint>

/// Our own drawings, sharp at every size. Main thread.
namespace sweeply::drawings {

[[nodiscard]] QIcon application();
/// A row of the module list, by its view code.
[[nodiscard]] QIcon module(std::uint8_t viewCode);
/// The colour of that picture.
[[nodiscard]] QColor moduleColour(std::uint8_t viewCode);
[[nodiscard]] QIcon iconFor(Icon icon);
/// A bundle that brings no picture of its own.
[[nodiscard]] QIcon bundle();
[[nodiscard]] QIcon document();

} // namespace sweeply::drawings
