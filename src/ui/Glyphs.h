#pragma once

#include <QIcon>

/// The outlines on buttons: one stroke in the palette's own colour, so that they are read on every palette, pale where
/// the button is disabled. Main thread.
namespace sweeply {

enum class Glyph { Scan, Stop, Pause, Resume, Remove, Uninstall, LockClosed, LockOpen, Warning };

[[nodiscard]] QIcon glyph(Glyph which);

} // namespace sweeply
