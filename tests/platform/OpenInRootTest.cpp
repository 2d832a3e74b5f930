#include "platform/OpenInRoot.h"

#include "platform/UniqueFd.h"
#include "platform/Volume.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace sweeply {
namespace {

using OpenInRootTest = VolumeTest;

TEST_F(OpenInRootTest, KernelAndWalkFindTheSameItemForEveryPath) {
    write("/a/file", "1");
    write("/b/deep/file", "2");
    makeFolder("/locked");
    link("/a/up", "../../../b");           // stops at the root
    link("/a/absolute", "/b/deep");        // begins again at the root
    link("/a/host", m_folder + "/victim"); // leads nowhere inside
    link("/a/victim", "../../victim");     // likewise
    link("/a/slash", "/");
    link("/a/loop", "loop");
    link("/a/dangling", "nothing");
    link("/a/notfolder", "file/");
    link("/a/folderslash", "../b/");
    link("/a/chain", "absolute");
    link("/0", "a/file");
    for (int i = 1; i <= 45; ++i)
        link("/" + std::to_string(i), std::to_string(i - 1));
    ASSERT_EQ(::mkfifo(host("/fifo").c_str(), 0600), 0);
    setMode("/locked", 0);
    auto paths =
        words(". .. ../.. ../victim a/file a/file/ a//file ./a/./file a/file/x a/file/.. a/.. a/up/ a/up/deep/file "
              "a/up/../a/file a/absolute/file a/absolute/../deep a/host a/victim a/slash/.. a/slash/a/file a/loop "
              "a/loop/x a/dangling a/notfolder a/folderslash a/folderslash/deep a/chain/file missing/.. locked "
              "locked/x fifo 39 40 45");
    paths.emplace_back();
    const UniqueFd root(::open(host("").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    const auto outcome = [&](auto open, const std::string& path, int flags, MiddleLinks links) {
        const UniqueFd fd(open(root.get(), path, flags, links));
        struct stat status {};
        if (!fd || ::fstat(fd.get(), &status) != 0)
            return std::string(std::strerror(errno));
        return std::to_string(status.st_ino) + (S_ISLNK(status.st_mode) ? " link" : "");
    };
    for (const auto& path : paths) {
        for (const int flags : {O_PATH, O_PATH | O_NOFOLLOW, O_PATH | O_DIRECTORY, O_RDONLY | O_NONBLOCK,
                                O_RDONLY | O_DIRECTORY, O_RDONLY | O_NOFOLLOW | O_NONBLOCK}) {
            for (const auto links : {MiddleLinks::Follow, MiddleLinks::Refuse}) {
                EXPECT_EQ(outcome(openInRootByWalking, path, flags, links), outcome(openInRoot, path, flags, links))
                    << "\"" << path << "\" flags " << flags << (links == MiddleLinks::Refuse ? " no links" : "");
            }
        }
    }
    setMode("/locked", 0700);
}

} // namespace
} // namespace sweeply
