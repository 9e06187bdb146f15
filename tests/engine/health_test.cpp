// The health check of one file, on real files made at test time.
#include "engine/health.h"

#include "engine/paths.h"
#include "platform/linux_platform.h"
#include "tests/support/sample_files.h"
#include "tests/support/temp_home.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quorrin::Engine {
namespace {

using quorrin::testing::readFile;
using quorrin::testing::TempHome;

constexpr std::array<std::string_view, 9> imageExtensions = {"jpg",  "jpeg", "png",  "gif", "tif",
                                                             "tiff", "heic", "heif", "bmp"};
constexpr std::array<std::string_view, 11> installerExtensions = {
    "exe", "bat", "cmd", "scr", "vbs", "js", "sh", "command", "app", "dmg", "pkg"};

// The check as the scanner runs it: extension lower-cased first, size as the file reports it.
std::optional<std::string> check(const std::string& path,
                                 platform::Platform& platform = platform::system()) {
    return healthIssue(path, lowercase(pathExtension(path)),
                       static_cast<std::int64_t>(readFile(path).size()), platform);
}

// The Linux platform, counting the probes the health check asks of it.
class CountingPlatform : public platform::LinuxPlatform {
public:
    platform::ImageProbe probeImage(const std::string& path) override {
        ++imageProbes;
        return LinuxPlatform::probeImage(path);
    }
    bool pdfOpens(const std::string& path) override {
        ++pdfProbes;
        return LinuxPlatform::pdfOpens(path);
    }
    int imageProbes = 0;
    int pdfProbes = 0;
};

std::string image(const TempHome& home, const std::string& name) {
    home.makeDir("Pictures");
    std::string path = home.path("Pictures/" + name);
    quorrin::testing::writeImage(path, 600, 160);
    return path;
}

TEST(Health, FindingsReadExactly) {
    EXPECT_EQ(emptyFileFinding, "Empty file \u2022 review before clearing");
    EXPECT_EQ(imageNotOpenedFinding, "Image could not be opened");
    EXPECT_EQ(imageNotDecodedFinding, "Image could not be decoded");
    EXPECT_EQ(pdfNotOpenedFinding, "PDF could not be opened \u2022 may be encrypted or damaged");
    EXPECT_EQ(installerFinding, "Installer or executable \u2022 review its source");
}

TEST(Health, AnEmptyFileGetsTheEmptyFindingAndNoOtherTest) {
    TempHome home;
    CountingPlatform platform;
    for (const char* name : {"photo.jpg", "setup.exe", "report.pdf", "notes.txt", "scan.HEIC"}) {
        std::string path = home.writeFile(std::string("Downloads/") + name, "");
        EXPECT_EQ(check(path, platform), emptyFileFinding) << name;
    }
    // A size the scan did not get counts as 0, whatever the file holds now.
    std::string whole = image(home, "whole.jpg");
    EXPECT_EQ(healthIssue(whole, "jpg", 0, platform), emptyFileFinding);
    EXPECT_EQ(platform.imageProbes, 0);
    EXPECT_EQ(platform.pdfProbes, 0);
}

TEST(Health, AWholeImageOfEveryCheckedExtensionHasNoFinding) {
    TempHome home;
    CountingPlatform platform;
    for (std::string_view extension : imageExtensions) {
        std::string path = image(home, "whole." + std::string(extension));
        EXPECT_EQ(check(path, platform), std::nullopt) << path;
    }
    EXPECT_EQ(platform.imageProbes, static_cast<int>(imageExtensions.size()));
    // The extension is lower-cased before it is looked up.
    EXPECT_EQ(check(image(home, "CAMERA.JPG"), platform), std::nullopt);
    EXPECT_EQ(platform.imageProbes, static_cast<int>(imageExtensions.size()) + 1);
}

TEST(Health, ATruncatedImageOfEveryCheckedExtensionCannotBeDecoded) {
    TempHome home;
    for (std::string_view extension : imageExtensions) {
        std::string path = image(home, "cut." + std::string(extension));
        quorrin::testing::truncateTo(path, readFile(path).size() / 2);
        EXPECT_EQ(check(path), imageNotDecodedFinding) << path;
    }
}

TEST(Health, TextNamedAsAnImageGetsAnImageFinding) {
    TempHome home;
    std::string path = home.writeFile("Pictures/notes.png", "Shopping list: bread, milk.\n");
    std::optional<std::string> finding = check(path);
    ASSERT_TRUE(finding.has_value());
    EXPECT_TRUE(*finding == imageNotOpenedFinding || *finding == imageNotDecodedFinding)
        << *finding;
}

TEST(Health, WebpAvifAndSvgAreNeverDecoded) {
    TempHome home;
    CountingPlatform platform;
    EXPECT_EQ(check(image(home, "whole.webp"), platform), std::nullopt);
    // Not even a file that no decoder could read gets an image finding.
    for (const char* name : {"broken.webp", "broken.avif", "broken.svg", "broken.cr2"}) {
        std::string path = home.writeFile(std::string("Pictures/") + name, "not an image\n");
        EXPECT_EQ(check(path, platform), std::nullopt) << name;
    }
    EXPECT_EQ(platform.imageProbes, 0);
}

TEST(Health, APdfThatOpensHasNoFinding) {
    TempHome home;
    CountingPlatform platform;
    std::string path = home.writeFile("Documents/report.pdf", quorrin::testing::minimalPdf());
    EXPECT_EQ(check(path, platform), std::nullopt);
    EXPECT_EQ(
        check(home.writeFile("Documents/REPORT.PDF", quorrin::testing::minimalPdf()), platform),
        std::nullopt);
    EXPECT_EQ(platform.pdfProbes, 2);
}

TEST(Health, ALockedOrDamagedPdfCannotBeOpened) {
    TempHome home;
    std::string pdf = quorrin::testing::minimalPdf();
    std::string whole = home.writeFile("Documents/report.pdf", pdf);
    std::string locked =
        quorrin::testing::encryptPdf(whole, home.path("Documents/locked.pdf"), "user-secret");
    EXPECT_EQ(check(locked), pdfNotOpenedFinding);
    std::string damaged = home.writeFile("Documents/damaged.pdf", pdf.substr(0, pdf.size() / 2));
    EXPECT_EQ(check(damaged), pdfNotOpenedFinding);
    std::string text = home.writeFile("Documents/text.pdf", "Just some words.\n");
    EXPECT_EQ(check(text), pdfNotOpenedFinding);
}

TEST(Health, InstallersAndExecutablesAreFoundByExtension) {
    TempHome home;
    CountingPlatform platform;
    for (std::string_view extension : installerExtensions) {
        std::string path = home.writeFile("Downloads/tool." + std::string(extension), "MZ\x90");
        EXPECT_EQ(check(path, platform), installerFinding) << path;
    }
    for (const char* name : {"Run Me.command", "Installer.dmg", "helper.js", "SETUP.EXE"}) {
        std::string path = home.writeFile(std::string("Downloads/") + name, "payload");
        EXPECT_EQ(check(path, platform), installerFinding) << name;
    }
    EXPECT_EQ(platform.imageProbes, 0);
    EXPECT_EQ(platform.pdfProbes, 0);
}

TEST(Health, AnExecutableWithoutAnInstallerExtensionHasNoFinding) {
    TempHome home;
    std::string script = home.writeFile("bin/deploy", "#!/bin/sh\necho deployed\n");
    ASSERT_EQ(::chmod(script.c_str(), 0755), 0);
    EXPECT_EQ(check(script), std::nullopt);
    std::string shell = home.writeFile("bin/deploy.sh", "#!/bin/sh\necho deployed\n");
    EXPECT_EQ(check(shell), installerFinding);
    EXPECT_EQ(check(home.writeFile("Documents/notes.txt", "plain words")), std::nullopt);
}

}  // namespace
}  // namespace quorrin::Engine
