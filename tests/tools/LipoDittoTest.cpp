#include "formats/MachOReader.h"
#include "tools/ToolWorld.h"

#include <gmock/gmock.h>
#include <sys/xattr.h>

namespace sweeply {
namespace {

using namespace testing;

std::string fatFile(const std::vector<std::string>& names, std::uint32_t codeSize = 5000) {
    std::vector<const macho::Architecture*> list;
    for (const auto& name : names)
        list.push_back(macho::findArchitecture(name));
    return macho::universalExecutable(list, codeSize);
}

class LipoDittoTest : public testing::Test, protected ToolWorld {
  protected:
    /// The bytes of one slice, nothing when there is none.
    static std::string sliceOf(const std::string& file, const std::string& name) {
        const auto fat = macho::readFat(file, file.size());
        for (const auto& slice : fat ? fat->slices : std::vector<macho::FatArch>()) {
            if (macho::architectureOf(slice) == macho::findArchitecture(name))
                return file.substr(static_cast<std::size_t>(slice.offset), static_cast<std::size_t>(slice.size));
        }
        return {};
    }
};

TEST_F(LipoDittoTest, FatFileIsDescribedAsTheMacsOwnToolDoes) {
    write("an architecture", fatFile({"ppc", "i386"}));
    EXPECT_EQ(run("lipo", {"-detailed_info", "an architecture"}).output,
              "Fat header in: an architecture\nfat_magic 0xcafebabe\nnfat_arch 2\n"
              "architecture ppc\n    cputype CPU_TYPE_POWERPC\n    cpusubtype CPU_SUBTYPE_POWERPC_ALL\n"
              "    offset 4096\n    size 8192\n    align 2^12 (4096)\n"
              "architecture i386\n    cputype CPU_TYPE_I386\n    cpusubtype CPU_SUBTYPE_I386_ALL\n"
              "    offset 12288\n    size 8192\n    align 2^12 (4096)\n");
    EXPECT_EQ(run("lipo", {"-info", "an architecture"}).output,
              "Architectures in the fat file: an architecture are: ppc i386 \n");
    write("thin", macho::executable(*macho::findArchitecture("ppc7400"), 10));
    EXPECT_EQ(run("lipo", {"-detailed_info", "thin"}).output,
              "input file thin is not a fat file\nNon-fat file: thin is architecture: ppc7400\n");
}

TEST_F(LipoDittoTest, FilesThatAreNoExecutablesOrBrokenOnesAreErrors) {
    const auto whole = fatFile({"ppc", "i386"});
    auto overlapping = whole;
    overlapping[8 + 20 + 10] = '\x10'; // the second slice begins at the first one's place
    auto twins = whole;
    twins.replace(28, 8, whole.substr(8, 8));
    const std::string hostile = std::string("\xca\xfe\xba\xbe\xff\xff\xff\xff", 8) + std::string(1000, 'x');
    const std::string javaClass = std::string("\xca\xfe\xba\xbe\0\0\0\x32", 8) + std::string(5000, 'x');
    for (const auto& bytes : {overlapping, twins, hostile, javaClass, whole.substr(0, 8), whole.substr(0, 40),
                              whole.substr(0, 5000), std::string("\xca\xfe\xba\xbe\0\0\0\0", 8)}) {
        write("bad", bytes);
        const auto said = run("lipo", {"-detailed_info", "bad"});
        EXPECT_EQ(said.exitStatus, 1);
        EXPECT_THAT(said.errors, AllOf(StartsWith("lipo: truncated or malformed fat file ("), HasSubstr(") bad\n")));
        const auto copied = run("ditto", {"-arch", "i386", "bad", "copy"});
        EXPECT_EQ(copied.exitStatus, 1);
        EXPECT_THAT(copied.errors, HasSubstr("malformed"));
        EXPECT_FALSE(contains("copy"));
    }
    for (const char* bytes : {"", "#!/bin/sh\n", "\xca\xfe"}) {
        write("bad", bytes);
        EXPECT_EQ(run("lipo", {"-detailed_info", "bad"}).errors,
                  "lipo: can't figure out the architecture type of: bad\n");
    }
    EXPECT_EQ(run("lipo", {"-info", "absent"}).errors,
              "lipo: can't open input file: absent (No such file or directory)\n");
    EXPECT_EQ(run("lipo", {"--help"}).exitStatus, 0);
    EXPECT_EQ(run("lipo", {"-create"}).exitStatus, 1);
}

TEST_F(LipoDittoTest, CopyKeepsTheNamedSlicesByteForByteAndAllAttributes) {
    const auto whole = fatFile({"ppc", "i386", "ppc64", "x86_64"});
    write("program", whole);
    setMode("program", 04711);
    const timespec times[] = {{1'000'000'000, 5}, {1'100'000'000, 7}};
    ASSERT_EQ(::utimensat(fd(), "program", times, 0), 0);
    const bool hasAttributes = ::setxattr(path("program").c_str(), "user.note", "kept", 4, 0) == 0;
    ASSERT_EQ(run("ditto", {"-arch", "i386", "-arch", "x86_64", "program", "copy"}).exitStatus, 0);
    const auto copy = read("copy");
    const auto fat = macho::readFat(copy, copy.size());
    ASSERT_TRUE(fat);
    EXPECT_EQ(fat->slices.size(), 2U);
    for (const char* name : {"i386", "x86_64"})
        EXPECT_EQ(sliceOf(copy, name), sliceOf(whole, name)) << name;
    EXPECT_LT(copy.size(), whole.size() / 2 + 4096);
    struct stat status {};
    ASSERT_EQ(::stat(path("copy").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 04711U);
    EXPECT_EQ(status.st_mtim.tv_sec, 1'100'000'000);
    EXPECT_EQ(status.st_mtim.tv_nsec, 7);
    if (hasAttributes) {
        char value[4] = {};
        EXPECT_EQ(::getxattr(path("copy").c_str(), "user.note", value, 4), 4);
    }
    EXPECT_EQ(read("program"), whole);
    ASSERT_EQ(run("ditto", {"-arch", "ppc", "program", "copy"}).exitStatus, 0);
    EXPECT_EQ(read("copy"), sliceOf(whole, "ppc")) << "one slice alone needs no table";
}

TEST_F(LipoDittoTest, FileThatWouldKeepNothingOrIsNoFileIsRefused) {
    write("program", fatFile({"ppc", "ppc64"}));
    EXPECT_THAT(run("ditto", {"-arch", "i386", "program", "copy"}).errors, HasSubstr("nothing would be left"));
    EXPECT_THAT(run("ditto", {"-arch", "vax", "program", "copy"}).errors, HasSubstr("unknown architecture vax"));
    makeLink("link", "program");
    EXPECT_EQ(run("ditto", {"-arch", "ppc", "link", "copy"}).exitStatus, 1);
    EXPECT_FALSE(contains("copy"));
    // A thin file is copied as it is, and what stood in the copy's place is not written through.
    write("victim", "precious");
    makeLink("copy", "victim");
    write("text", "#!/bin/sh\n");
    EXPECT_EQ(run("ditto", {"-arch", "ppc", "text", "copy"}).exitStatus, 0);
    EXPECT_EQ(read("victim"), "precious");
    EXPECT_EQ(read("copy"), "#!/bin/sh\n");
}

TEST_F(LipoDittoTest, WideFatFilesAreReadAndStayWide) {
    const auto i386 = macho::executable(*macho::findArchitecture("i386"), 10);
    const auto ppc = macho::executable(*macho::findArchitecture("ppc"), 10);
    const std::vector<macho::FatArch> table{{macho::kCpuI386, 3, 4096, i386.size(), 12},
                                            {macho::kCpuX86_64, 3, 8192, i386.size(), 12},
                                            {macho::kCpuPowerPC, 0, 12288, ppc.size(), 12}};
    std::string file = macho::fatHeader(table, true);
    for (const auto& slice : {i386, i386, ppc}) {
        file.resize((file.size() + 4095) / 4096 * 4096);
        file += slice;
    }
    write("program", file);
    EXPECT_THAT(run("lipo", {"-detailed_info", "program"}).output, HasSubstr("fat_magic 0xcafebabf\nnfat_arch 3\n"));
    ASSERT_EQ(run("ditto", {"-arch", "ppc", "-arch", "i386", "program", "copy"}).exitStatus, 0);
    const auto copy = read("copy");
    EXPECT_TRUE(macho::readFat(copy, copy.size())->isWide);
    EXPECT_EQ(sliceOf(copy, "ppc"), ppc);
}

/// Another reader of the same format, and files that another writer put together.
TEST_F(LipoDittoTest, IndependentToolsAgree) {
    std::string lipo;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator("/usr/lib", ignored)) {
        const auto candidate = entry.path() / "bin/llvm-lipo";
        if (entry.path().filename().string().starts_with("llvm-") && std::filesystem::exists(candidate))
            lipo = candidate;
    }
    write("ppc", macho::executable(*macho::findArchitecture("ppc"), 9000));
    write("i386", macho::executable(*macho::findArchitecture("i386"), 100));
    write("x86_64", macho::executable(*macho::findArchitecture("x86_64"), 20'000));
    ASSERT_TRUE(runProgram(lipo, {"-create", "ppc", "i386", "x86_64", "-output", "program"}).succeeded());
    ASSERT_TRUE(run("ditto", {"-arch", "i386", "-arch", "x86_64", "program", "copy"}).succeeded());
    EXPECT_THAT(runProgram(lipo, {"-archs", "copy"}).output, AllOf(HasSubstr("i386"), HasSubstr("x86_64")));
    for (const char* name : {"i386", "x86_64"}) {
        ASSERT_TRUE(runProgram(lipo, {"copy", "-thin", name, "-output", "thin"}).succeeded());
        EXPECT_EQ(read("thin"), read(name)) << name;
    }
    EXPECT_THAT(run("lipo", {"-info", "program"}).output, HasSubstr("are: ppc i386 x86_64 \n"));
}

} // namespace
} // namespace sweeply
