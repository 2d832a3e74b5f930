#pragma once

#include "platform/Error.h"

#include <string>
#include <string_view>

namespace sweeply {

class FileManager;

/// Says which program of the host does the work of a Mac's command-line tool.
///
/// The core names tools by their paths on a Mac ("/usr/bin/lipo"). On a Mac that cleans itself that is what runs;
/// elsewhere our equivalent of the same name from the libexec folder, or, where we have none, the host's own. The
/// caller's $PATH is never asked: some of these run with administrator rights.
///
/// Thread-safe; holds nothing open.
class ToolTable final {
  public:
    enum class Host { Mac, Other };

    /// `libexecFolder` is an absolute host path. `host` is Mac only where the target is this very machine.
    ToolTable(std::string libexecFolder, Host host);
    /// Finds out by itself whether this machine is a Mac and the target of `files`.
    ToolTable(std::string libexecFolder, const FileManager& files);

    /// The absolute host path of the program for `tool`, or Unavailable.
    [[nodiscard]] Result<std::string> programFor(std::string_view tool) const;

  private:
    std::string m_libexecFolder;
    Host m_host;
};

} // namespace sweeply
