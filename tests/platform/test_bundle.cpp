// The application's identifier, asked by a probe program copied into
// application folders built in a temporary folder.
#include "TempFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <sys/stat.h>

namespace {

std::string plist(const char* identifier)
{
    return std::string("<plist><dict><key>CFBundleName</key><string>x</string>")
           + (identifier ? std::string("<key>CFBundleIdentifier</key><string>") + identifier + "</string>" : "")
           + "</dict></plist>";
}

// Makes `folder`/Contents/MacOS, with an Info.plist naming `identifier`
// (none: no list at all).
void makeBundle(const std::string& folder, const char* identifier, bool withList = true)
{
    for (const std::string& f : {folder, folder + "/Contents", folder + "/Contents/MacOS"})
        ::mkdir(f.c_str(), 0755);
    if (withList)
        kzbs_test::writeFile(folder + "/Contents/Info.plist", plist(identifier));
}

// Runs a copy of the probe placed in `folder`; `desktopName` is passed on.
std::string probeIn(const std::string& folder, const std::string& desktopName)
{
    const std::string copy = folder + "/probe";
    kzbs_test::writeFile(copy, kzbs_test::readFile(BUNDLE_PROBE), 0755);
    std::string output;
    if (FILE* pipe = ::popen(("'" + copy + "' " + desktopName).c_str(), "r")) {
        char buffer[256];
        while (std::fgets(buffer, sizeof buffer, pipe))
            output += buffer;
        ::pclose(pipe);
    }
    return output.substr(0, output.find('\n'));
}

} // namespace

TEST(BundleId, InfoPlistThenDesktopFileNameThenUnknown)
{
    kzbs_test::TempFolder dir;
    makeBundle(dir / "Planer.app", "de.kz.planer");
    makeBundle(dir / "Anonym.app", nullptr);
    makeBundle(dir / "NoList.app", nullptr, false);
    ::mkdir((dir / "plain").c_str(), 0755);
    struct Case {
        std::string folder, desktopName, ids;
    };
    const Case cases[] = {
        {dir / "Planer.app/Contents/MacOS", "planer-desktop", "de.kz.planer|de.kz.planer"},
        {dir / "Anonym.app/Contents/MacOS", "planer-desktop", "planer-desktop|planer-desktop"},
        {dir / "NoList.app/Contents/MacOS", "", "unknownBundleID|unknownBundleID"},
        {dir / "plain", "planer-desktop", "planer-desktop|planer-desktop"},
        {dir / "plain", "", "unknownBundleID|unknownBundleID"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(probeIn(c.folder, c.desktopName), c.ids) << c.folder;
}

// A helper at Outer.app/Contents/Helpers/Inner.app presents itself under the
// outer identifier when both share the prefix up to the outer one's last ".".
TEST(MainBundleId, NestedHelperTakesTheOuterIdentifierOfTheSameMaker)
{
    struct Case {
        const char* outer;
        const char* inner;
        std::string ids;
    };
    const Case cases[] = {
        {"de.kz.planer", "de.kz.helper", "de.kz.helper|de.kz.planer"},
        {"com.other.app", "de.kz.helper", "de.kz.helper|de.kz.helper"},
        {"planer", "de.kz.helper", "de.kz.helper|de.kz.helper"}, // no "." in the outer identifier
        {nullptr, "de.kz.helper", "de.kz.helper|de.kz.helper"},
    };
    for (const Case& c : cases) {
        kzbs_test::TempFolder dir;
        makeBundle(dir / "Outer.app", c.outer);
        ::mkdir((dir / "Outer.app/Contents/Helpers").c_str(), 0755);
        makeBundle(dir / "Outer.app/Contents/Helpers/Inner.app", c.inner);
        EXPECT_EQ(probeIn(dir / "Outer.app/Contents/Helpers/Inner.app/Contents/MacOS", ""), c.ids)
            << (c.outer ? c.outer : "(none)");
    }
}
