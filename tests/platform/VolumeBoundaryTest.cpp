#include "platform/VolumeBoundary.h"

#include "platform/TestFolder.h"
#include "platform/TreeRemover.h"

#include <cerrno>
#include <cstddef>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

namespace sweeply {
namespace {

/// Makes openat2 fail for the rest of the process, as on an old kernel (ENOSYS) or in an old container (EPERM).
void refuseOpenat2(unsigned errorNumber) {
    sock_filter instructions[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat2, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | errorNumber),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{4, instructions};
    ASSERT_EQ(::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
    ASSERT_EQ(::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0), 0);
}

void expectBoundaryHolds() {
    const TestFolder folder;
    folder.makeFolder("folder");
    folder.makeFile("file");
    folder.makeLink("link", "folder");
    const VolumeBoundary here(folder.fd());
    EXPECT_TRUE(here.openFolder(folder.fd(), "folder"));
    EXPECT_FALSE(here.openFolder(folder.fd(), "file"));
    EXPECT_EQ(errno, ENOTDIR);
    EXPECT_FALSE(here.openFolder(folder.fd(), "link"));
    EXPECT_TRUE(errno == ENOTDIR || errno == ELOOP) << errno;

    const UniqueFd root(::open("/", O_PATH | O_CLOEXEC));
    const VolumeBoundary boundary(root.get());
    EXPECT_FALSE(boundary.openFolder(root.get(), "proc"));
    EXPECT_EQ(errno, EXDEV);
}

TEST(VolumeBoundaryTest, NeitherMountPointsNorLinksAreEntered) { expectBoundaryHolds(); }

class WithoutOpenat2Test : public testing::TestWithParam<unsigned> {};

TEST_P(WithoutOpenat2Test, NeitherMountPointsNorLinksAreEnteredAndTreesAreRemoved) {
    refuseOpenat2(GetParam());
    expectBoundaryHolds();

    const TestFolder folder;
    folder.makeFile("victim/precious");
    folder.makeFile("tree/a/file");
    folder.makeLink("tree/a/link", folder.path("victim"));
    EXPECT_TRUE(removeTree(folder.fd(), "tree"));
    EXPECT_FALSE(folder.contains("tree"));
    EXPECT_TRUE(folder.contains("victim/precious"));
}

INSTANTIATE_TEST_SUITE_P(Refusals, WithoutOpenat2Test, testing::Values(ENOSYS, EPERM));

} // namespace
} // namespace sweeply
