#include "formats/BillOfMaterials.h"
#include "modules/UninstallWorld.h"

#include <archive.h>
#include <archive_entry.h>
#include <gmock/gmock.h>

namespace sweeply {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

class ReceiptsTest : public UninstallWorldTest {
  protected:
    static std::string bill(const std::vector<std::string>& paths) {
        std::vector<bom::Entry> entries;
        for (const auto& path : paths)
            entries.emplace_back().path = path;
        return bom::write(entries);
    }
    /// A bill of which one line names a file that cannot be.
    static std::string oddBill() {
        auto odd = bill({"opt/tool", "zz"});
        return odd.replace(odd.rfind("zz"), 2, "..");
    }
    using Members = std::vector<std::pair<std::string, std::string>>;
    static std::string flatPackage(const Members& members) {
        std::string bytes(std::size_t{1} << 20U, '\0');
        std::size_t size = 0;
        auto* out = archive_write_new();
        archive_write_set_format_xar(out);
        archive_write_open_memory(out, bytes.data(), bytes.size(), &size);
        for (const auto& [path, contents] : members) {
            auto* entry = archive_entry_new();
            archive_entry_set_pathname(entry, path.c_str());
            archive_entry_set_filetype(entry, AE_IFREG);
            archive_entry_set_perm(entry, 0644);
            archive_entry_set_size(entry, static_cast<la_int64_t>(contents.size()));
            archive_write_header(out, entry);
            archive_write_data(out, contents.data(), contents.size());
            archive_entry_free(entry);
        }
        EXPECT_EQ(archive_write_free(out), ARCHIVE_OK);
        return bytes.substr(0, size);
    }
    PackageManager::Paths filesOf(const std::string& name, const std::string& path, Package::Type type) {
        return m_packages.getPackageDependencies(m_packages.packageAt(name, path, type), false);
    }
};

TEST_F(ReceiptsTest, ComponentsInstallWhereTheySayOrAtTheRootWithoutAReceipt) {
    const auto info = [](const std::string& attributes) { return "<pkg-info " + attributes + "/>"; };
    write("/tmp/Product.pkg",
          flatPackage({{"one.pkg/PackageInfo", info("identifier='com.example.one' install-location='/opt'")},
                       {"one.pkg/Bom", bill({"bin/one"})},
                       {"two.pkg/Bom", bill({"usr/two"})},
                       {"two.pkg/PackageInfo", info("identifier='com.example.two'")},
                       {"three.pkg/PackageInfo", info("identifier='com.example.three' install-location=''")},
                       {"three.pkg/Bom", bill({"three"})},
                       {"four.pkg/PackageInfo", info("install-location='/never'")},
                       {"four.pkg/Bom", bill({"four"})},
                       {"five.pkg/PackageInfo", "torn"},
                       {"five.pkg/Bom", bill({"five"})}}));
    EXPECT_THAT(filesOf("Product.pkg", "/tmp/Product.pkg", Package::Type::Flat),
                UnorderedElementsAre("/opt/bin/one", "/usr/two", "/three", "/four", "/five", "Package: com.example.one",
                                     "Package: com.example.three"));
}

TEST_F(ReceiptsTest, ImpossibleLineOfABillIsReportedOnceAndTheRestCounts) {
    write("/var/db/receipts/com.example.odd.plist", plist::writeXml(plist::Dictionary()));
    write("/var/db/receipts/com.example.odd.bom", oddBill());
    write("/tmp/Odd.pkg/Contents/Archive.bom", oddBill());
    write("/tmp/Flat.pkg", flatPackage({{"odd.pkg/Bom", oddBill()}}));
    for (int time = 0; time < 2; ++time) {
        EXPECT_THAT(filesOf("com.example.odd", "", Package::Type::Database), ElementsAre("/opt/tool"));
        EXPECT_THAT(filesOf("Odd.pkg", "/tmp/Odd.pkg", Package::Type::Bundle), ElementsAre("/opt/tool"));
        EXPECT_THAT(filesOf("Flat.pkg", "/tmp/Flat.pkg", Package::Type::Flat), ElementsAre("/opt/tool"));
    }
    const std::string says = ": 1 of its entries is left out: a path has a name that no file can have";
    EXPECT_THAT(m_problems,
                ElementsAre("/var/db/receipts/com.example.odd.bom" + says, "/tmp/Odd.pkg/Contents/Archive.bom" + says,
                            "/tmp/Flat.pkg/odd.pkg/Bom" + says));
}

} // namespace
} // namespace sweeply
