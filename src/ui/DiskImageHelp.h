#pragma once

class QWidget;

namespace sweeply {

/// Says how a disk image becomes a folder that can be chosen.
void showDiskImageHelp(QWidget* parent);

} // namespace sweeply
