#pragma once

#include "engine/tree/Icon.h"

#include <QHash>
#include <QIcon>
#include <QObject>
#include <QThreadPool>
#include <cstdint>
#include <functional>
#include <string>

namespace sweeply {

class FileManager;

/// What pictures the program shows: its own drawings, and those that applications of the target bring along. Main
/// thread; a stranger's picture is read on another one and shown once it is there.
class Pictures final {
  public:
    /// `files` outlives this.
    explicit Pictures(const FileManager& files) : m_files(files) { m_readers.setMaxThreadCount(1); }
    ~Pictures();

    /// `path` is the target's, for the icon of an item's own.
    [[nodiscard]] QIcon iconFor(Icon icon, const std::string& path);
    /// Called when pictures have come in.
    void setChanged(std::function<void()> changed) { m_changed = std::move(changed); }

    /// A row of the module list, by its view code.
    [[nodiscard]] static QIcon moduleIcon(std::uint8_t viewCode);
    [[nodiscard]] static QIcon applicationIcon();

  private:
    void read(const std::string& bundle);

    const FileManager& m_files;
    QHash<QString, QIcon> m_own; ///< by path
    std::function<void()> m_changed = [] {};
    QObject m_context;
    QThreadPool m_readers; ///< last: its thread ends before the rest goes
};

} // namespace sweeply
