#include "formats/BillOfMaterials.h"
#include "formats/PropertyList.h"
#include "tools/ToolWorld.h"

#include <csignal>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <thread>

namespace sweeply {
namespace {

using namespace testing;

class PackageToolsTest : public testing::Test, protected ToolWorld {
  protected:
    static std::string bill() {
        using enum bom::EntryType;
        return bom::write({{.path = "usr/bin/tool", .mode = 0100755, .size = 7, .checksum = 9, .linkTarget = {}},
                           {.path = "usr/link", .type = SymbolicLink, .mode = 0120755, .linkTarget = "bin/tool"},
                           {.path = "dev", .type = Device, .mode = 020644, .linkTarget = {}, .device = 77},
                           {.path = "empty folder", .type = Directory, .mode = 040755, .linkTarget = {}}});
    }
    void addReceipt(const std::string& identifier) const {
        write("private/var/db/receipts/" + identifier + ".bom", bill());
        write("private/var/db/receipts/" + identifier + ".plist",
              plist::writeXml(plist::Dictionary({{"PackageIdentifier", identifier},
                                                 {"PackageVersion", "1.2"},
                                                 {"InstallDate", plist::Date{100}},
                                                 {"InstallPrefixPath", "Applications"}})));
    }
    ProcessResult pkgutil(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--volume", path()});
        return run("pkgutil", arguments);
    }
};

TEST_F(PackageToolsTest, BillIsListedWithAllItSaysOrOnlyPaths) {
    write("bill", bill());
    EXPECT_EQ(run("lsbom", {"bill"}).output, ".\t40755\t0/0\n./dev\t20644\t0/0\t77\n./empty folder\t40755\t0/0\n"
                                             "./usr\t40755\t0/0\n./usr/bin\t40755\t0/0\n"
                                             "./usr/bin/tool\t100755\t0/0\t7\t9\n"
                                             "./usr/link\t120755\t0/0\t0\t0\tbin/tool\n");
    EXPECT_EQ(run("lsbom", {"-f", "-s", "bill"}).output, "./usr/bin/tool\n");
    EXPECT_EQ(run("lsbom", {"-sdl", "bill"}).output, ".\n./empty folder\n./usr\n./usr/bin\n./usr/link\n");
    write("bad", bill().substr(0, 600));
    for (const char* file : {"bad", "absent"}) {
        const auto said = run("lsbom", {"-fs", file});
        EXPECT_EQ(said.exitStatus, 1);
        EXPECT_EQ(said.output, "");
        EXPECT_THAT(said.errors, HasSubstr("lsbom: " + std::string(file) + ": "));
    }
    EXPECT_EQ(run("lsbom", {"-z", "bill"}).exitStatus, 1);
    auto odd = bill();
    odd.replace(odd.rfind("empty folder"), 5, "a/b/c");
    write("odd", odd);
    write("var/db/receipts/odd.bom", odd);
    for (const auto& said : {run("lsbom", {"-fs", "odd"}), pkgutil({"--only-files", "--lsbom", "odd"})}) {
        EXPECT_EQ(said.exitStatus, 1);
        EXPECT_THAT(said.output, HasSubstr("./usr/bin/tool\n"));
        EXPECT_THAT(said.errors, HasSubstr(": 1 of its entries is left out: a path has a name that no file can have"));
    }
}

TEST_F(PackageToolsTest, ReceiptsAreListedDescribedAndForgotten) {
    makeFolder("private");
    makeLink("var", "private/var");
    addReceipt("com.example.one");
    addReceipt("com.example.two");
    EXPECT_EQ(pkgutil({"--pkgs"}).output, "com.example.one\ncom.example.two\n");
    EXPECT_EQ(pkgutil({"--pkgs=.*two"}).output, "com.example.two\n");
    EXPECT_EQ(pkgutil({"--pkg-info", "com.example.one"}).output,
              "package-id: com.example.one\nversion: 1.2\nvolume: " + path() +
                  "\nlocation: Applications\ninstall-time: 978307300\n");
    EXPECT_EQ(pkgutil({"--only-files", "--lsbom", "com.example.one"}).output, "./dev\n./usr/bin/tool\n./usr/link\n");
    EXPECT_EQ(pkgutil({"--only-dirs", "--files", "com.example.one"}).output, "empty folder\nusr\nusr/bin\n");
    EXPECT_EQ(pkgutil({"--forget", "com.example.one"}).exitStatus, 0);
    EXPECT_EQ(pkgutil({"--pkgs"}).output, "com.example.two\n");
    for (const char* identifier : {"com.example.one", "../../../victim", "."}) {
        for (const char* action : {"--forget", "--files", "--pkg-info"}) {
            const auto said = pkgutil({action, identifier});
            EXPECT_EQ(said.exitStatus, 1) << action << identifier;
            EXPECT_THAT(said.errors, HasSubstr("No receipt for '" + std::string(identifier) + "' found at"));
        }
    }
    EXPECT_EQ(pkgutil({"--pkgs=("}).exitStatus, 1);
    EXPECT_EQ(pkgutil({}).exitStatus, 1);
}

TEST_F(PackageToolsTest, ReceiptsFolderThatLeadsOutOfTheVolumeStaysInside) {
    write("victim/com.example.one.bom", "precious");
    makeFolder("volume/var/db");
    makeLink("volume/var/db/receipts", path("victim"));
    EXPECT_EQ(run("pkgutil", {"--volume", path("volume"), "--forget", "com.example.one"}).exitStatus, 1);
    EXPECT_EQ(read("victim/com.example.one.bom"), "precious");
}

TEST_F(PackageToolsTest, ProcessIsListedByItsRealPathAndQuits) {
    std::filesystem::copy_file("/bin/sleep", path("It's a \"program\"\nwith $(x)"));
    const std::string program = path("It's a \"program\"\nwith $(x)");
    const pid_t child = ::fork();
    if (child == 0) {
        ::execl(program.c_str(), "other name", "600", static_cast<char*>(nullptr));
        ::_exit(1);
    }
    std::string shown = program;
    shown.replace(shown.find('\n'), 1, "?");
    const std::string line = std::to_string(child) + " " + shown + "\n";
    while (run("ps", {"-x", "-a", "-opid", "-ocomm"}).output.find(line) == std::string::npos)
        std::this_thread::yield();
    std::string escaped = program;
    for (auto at = escaped.find('"'); at != std::string::npos; at = escaped.find('"', at + 2))
        escaped.insert(at, "\\");
    const auto script = [](const std::string& path) {
        return "tell application \"" + path + "\"\nwith timeout of 20 seconds\nquit\nend timeout\nend tell\n";
    };
    EXPECT_EQ(run("osascript", {"-e", script(path("other"))}).exitStatus, 0);
    EXPECT_EQ(::waitpid(child, nullptr, WNOHANG), 0);
    int status = 0;
    const std::jthread reaper([&] { ::waitpid(child, &status, 0); });
    EXPECT_EQ(run("osascript", {"-e", script(escaped)}).exitStatus, 0);
    EXPECT_THAT(run("osascript", {"-e", "do shell script \"true\""}).errors, HasSubstr("(-2741)"));
}

} // namespace
} // namespace sweeply
