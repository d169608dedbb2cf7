// SPDX-License-Identifier: BSD-3-Clause
#include "resources/KELResApi.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELFileTools.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELUtilities.h"
#include "support/TempDir.h"

#include <QImage>

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Where the project's libraries stand: beside libkel.
std::string KELUtilities_LibraryDir()
{
    Dl_info info{};
    ::dladdr(::dlsym(RTLD_DEFAULT, "InitializeKEL"), &info);
    const std::string path = info.dli_fname ? info.dli_fname : "";
    return path.substr(0, path.rfind('/'));
}

TEST(KELFileTools, PathsDirectoriesAndTheirRemoval)
{
    TempDir dir;
    EXPECT_EQ(KELFileTools::GetCorrectDirectoryPath("/a/b/"), "/a/b");
    EXPECT_EQ(KELFileTools::GetCorrectDirectoryPath("/a/b"), "/a/b");
    std::string relative;
    KELFileTools::SetFilePathToRelative("/base/", "/base/sub/file", relative);
    EXPECT_EQ(relative, "sub/file");

    KELFileTools::CreateDirectory(dir / "one/two/three/");
    EXPECT_TRUE(KELFileTools::IsDirectory(dir / "one/two/three"));
    TempDir::Write(dir / "one/two/file", "x");
    EXPECT_FALSE(KELFileTools::IsDirectory(dir / "one/two/file"));
    TempDir::Write(dir / "one/a-first", "x");
    TempDir::Write(dir / "one/z-locked", "x");
    ::chmod((dir / "one/z-locked").c_str(), 0444);
    try {
        KELFileTools::RemoveDirectory(dir / "one");
        FAIL() << "a read-only file was deleted";
    } catch (const CFileToolException& e) {
        EXPECT_EQ(e.GetErrorCode(), CFileToolException::DeleteFileFailed);
        EXPECT_EQ(e.GetFileName(), dir / "one/z-locked");
    }
    EXPECT_FALSE(KELFileTools::CheckFileExist(dir / "one/a-first", false)) << "files before it stay deleted";
    EXPECT_TRUE(KELFileTools::CheckFileExist(dir / "one", true)) << "the flag makes read-only files writable";
    KELFileTools::RemoveDirectory(dir / "one");
    EXPECT_FALSE(KELFileTools::IsDirectory(dir / "one"));
    TempDir::Write(dir / "file-in-the-way", "");
    EXPECT_THROW(KELFileTools::CreateDirectory(dir / "file-in-the-way/x"), CFileToolException);
}

TEST(KELFileTools, ComparingListingAndTemporaryFiles)
{
    TempDir dir;
    TempDir::Write(dir / "a", std::string(1000, 'x'));
    TempDir::Write(dir / "copy", std::string(1000, 'x'));
    TempDir::Write(dir / "longer", std::string(1001, 'x'));
    EXPECT_TRUE(KELFileTools::CompareFiles(dir / "a", dir / "copy"));
    EXPECT_FALSE(KELFileTools::CompareFiles(dir / "a", dir / "longer"));
    EXPECT_FALSE(KELFileTools::CompareFiles(dir / "a", dir / "missing"));

    KELFileTools::CreateDirectory(dir / "left/sub");
    KELFileTools::CreateDirectory(dir / "right/sub");
    TempDir::Write(dir / "left/same", "s");
    TempDir::Write(dir / "right/same", "s");
    TempDir::Write(dir / "left/sub/changed", "1");
    TempDir::Write(dir / "right/sub/changed", "2");
    TempDir::Write(dir / "left/only-left", "");
    TempDir::Write(dir / "right/only-right", "");
    std::vector<std::string> differences;
    KELFileTools::ListDirectoryDifference(dir / "left", dir / "right", differences);
    EXPECT_EQ(differences, (std::vector<std::string>{"< only-left", "! sub/changed", "> only-right"}));

    std::string temporary;
    ASSERT_TRUE(KELFileTools::GetTmpFileName(temporary));
    EXPECT_NE(temporary.find("/PLM"), std::string::npos);
    EXPECT_TRUE(KELFileTools::CheckFileExist(temporary, false));
    ::unlink(temporary.c_str());

    unsigned long checksum = 99;
    KELFileTools::FileChecksum(dir / "a", checksum);
    EXPECT_EQ(checksum, 0u) << "a placeholder, always 0";
    try {
        KELFileTools::FileChecksum(dir / "missing", checksum);
        FAIL();
    } catch (const CFileToolException& e) {
        EXPECT_EQ(e.GetErrorCode(), CFileToolException::ChecksumOpenFailed);
    }
}

TEST(KELFileTools, MessagesComeFromTheResourceModuleWithCodesSevenAndEightCrossed)
{
    EXPECT_EQ(CFileToolException::MessageFor(0, "f", "x"), "A file operation failed.");
    EXPECT_EQ(CFileToolException::MessageFor(2, "/d", "no room"), "The directory /d could not be created. no room");
    EXPECT_EQ(CFileToolException::MessageFor(7, "f", ""), KELResources::Format(4064, {"f", ""}));
    EXPECT_EQ(CFileToolException::MessageFor(8, "f", ""), KELResources::Format(4063, {"f", ""}));
    char buffer[16] = "untouched";
    EXPECT_FALSE(CFileToolException(9, "f").GetErrorMessage(buffer, sizeof buffer));
    EXPECT_STREQ(buffer, "untouched");
    EXPECT_TRUE(CFileToolException(3, "file").GetErrorMessage(buffer, sizeof buffer));
    EXPECT_EQ(std::string(buffer), std::string("The file file could not be deleted. ").substr(0, 15))
        << "the message is cut to the buffer";
}

TEST(KELUtilities, VersionRecordsOfTheProjectsBinaries)
{
    unsigned int major = 9, minor = 9, build = 9;
    std::string description, product;
    // The function's own address, not the program's call stub for it.
    const void* inLibrary = ::dlsym(RTLD_DEFAULT, "InitializeKEL");
    ASSERT_TRUE(KELUtilities::GetModuleVersion(inLibrary, major, minor, build, description, product));
    EXPECT_EQ(std::to_string(major) + "." + std::to_string(minor) + "." + std::to_string(build), KEL_VERSION_STRING);
    EXPECT_EQ(description, "KEL library");
    EXPECT_EQ(product, "KEL");

    for (const char* binary : {"/libzed.so", "/libKELRes.so"}) {
        const std::string path = KELUtilities_LibraryDir() + binary;
        EXPECT_TRUE(KELUtilities::GetFileVersion(path, major, minor, build, description, product)) << path;
        EXPECT_EQ(product, "KEL") << path;
    }

    TempDir dir;
    TempDir::Write(dir / "plain", "no record here");
    EXPECT_FALSE(KELUtilities::GetFileVersion(dir / "plain", major, minor, build, description, product));
    EXPECT_EQ(major + minor + build, 0u);
    EXPECT_EQ(description, "");
    EXPECT_FALSE(KELUtilities::GetFileVersion(dir / "missing", major, minor, build, description, product));
    EXPECT_FALSE(KELUtilities::GetFileVersion("/dev/zero", major, minor, build, description, product))
        << "a device is refused, not read until memory runs out";
}

TEST(KELResourceModule, HoldsTheStringsTheMenuAndTheIcons)
{
    ASSERT_TRUE(KELResources::Load());
    for (unsigned int id = 4004; id <= 4069; ++id)
        EXPECT_FALSE(KELResources::String(id).empty()) << id;
    EXPECT_EQ(KELResources::String(4026), "TRUE");
    EXPECT_EQ(KELResources::String(4027), "FALSE");
    EXPECT_EQ(KELResources::String(4045), "(no default)") << "the dictionary's no-default text";
    EXPECT_EQ(KELResources::String(4050), "ORVEX_SYSTEM_PATH");
    const std::string fragment = KELResources::String(4069);
    EXPECT_TRUE(std::all_of(fragment.begin(), fragment.end(),
                            [](char c) { return !std::islower(static_cast<unsigned char>(c)); }));
    EXPECT_EQ(KELResources::String(9999), "");

    unsigned int count = 0;
    const KELResSubMenu* menu = KELResources::Menu(4004, count);
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(count, 6u);
    std::vector<unsigned int> ids;
    for (unsigned int i = 0; i < count; ++i)
        for (unsigned int k = 0; k < menu[i].count; ++k)
            ids.push_back(menu[i].items[k].id);
    EXPECT_EQ(ids, (std::vector<unsigned int>{33303, 33307, 33308, 33301, 33309, 33304, 33304}));

    for (unsigned int id : {4007u, 4009u, 4010u, 4011u}) {
        const char* xpm = KELResources::Image(id);
        ASSERT_NE(xpm, nullptr) << id;
        QImage image;
        EXPECT_TRUE(image.loadFromData(QByteArray(xpm), "XPM")) << id;
        EXPECT_EQ(image.size(), QSize(16, 16)) << id;
    }
    EXPECT_EQ(KELResources::Description(), "KEL resources, English");
}

}  // namespace
