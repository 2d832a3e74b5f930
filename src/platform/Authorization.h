#pragma once

#include "platform/Error.h"

#include <string>
#include <tl/expected.hpp>
#include <vector>

namespace sweeply {

/// Why administrator rights were not given.
struct AuthorizationFailure {
    int status = 0; ///< the service's own number, for the log
    std::string reason;
};

using AuthorizationResult = tl::expected<void, AuthorizationFailure>;

/// The service that lends administrator rights: found, asked once, used for single tools, given back.
///
/// create(), copyRights() and giveBack() belong to one thread; run() may be called from any, between the last two.
class Authorization {
  public:
    virtual ~Authorization() = default;

    /// Reaches the service; nobody is asked anything yet.
    virtual AuthorizationResult create() = 0;
    /// Asks the user. Returns when the rights are there or were refused.
    virtual AuthorizationResult copyRights() = 0;
    /// Gives the rights back; harmless when there are none.
    virtual void giveBack() = 0;

    /// Runs `program` (an absolute host path) as the administrator and waits for it; its exit status, 128 and more when
    /// a signal ended it. Fails when it could not be started or the rights have lapsed.
    ///
    /// `workingDirectory` is a directory descriptor, or -1. To remove an item so that no folder swapped on the way can
    /// redirect the removal, hand over its parent folder and name the item "./NAME".
    virtual Result<int> run(const std::string& program, const std::vector<std::string>& arguments,
                            int workingDirectory) = 0;
};

/// What decides how sudo is asked.
struct SudoSetting {
    bool isRoot = false;      ///< needs no sudo at all
    bool hasAskPass = false;  ///< SUDO_ASKPASS names a program that shows a password dialog
    bool hasTerminal = false; ///< sudo can ask on the terminal
    /// Where sudo is looked for, in order; the caller's $PATH is not.
    std::vector<std::string> folders{"/usr/bin", "/bin", "/usr/local/bin"};

    static SudoSetting ofThisProcess();
};

/// Administrator rights by sudo, which remembers the permission for some minutes. Root already has them.
///
/// A sudo that is set up to change the working directory could make "./NAME" mean something else: with such a one run()
/// refuses every command that asks for a working directory.
class SudoAuthorization final : public Authorization {
  public:
    explicit SudoAuthorization(SudoSetting setting) : m_setting(std::move(setting)) {}

    AuthorizationResult create() override;
    AuthorizationResult copyRights() override;
    void giveBack() override;
    Result<int> run(const std::string& program, const std::vector<std::string>& arguments,
                    int workingDirectory) override;

  private:
    [[nodiscard]] bool keepsWorkingDirectory() const;

    SudoSetting m_setting;
    std::string m_sudo; ///< absolute path, empty before create()
    bool m_keepsWorkingDirectory = false;
};

} // namespace sweeply
