// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "bridge/FileNaming.h"

#include <QSet>

using namespace velmora;

namespace {

struct NamingCase {
    const char* name;
    const char* given;
    QStringList taken;
    const char* expected;
};

void PrintTo(const NamingCase& c, std::ostream* os) {
    *os << c.name;
}

class GetGoodPath : public ::testing::TestWithParam<NamingCase> {};

TEST_P(GetGoodPath, ChoosesTheFirstFreeNumberedName) {
    const NamingCase& c = GetParam();
    const QSet<QString> taken(c.taken.begin(), c.taken.end());
    const QString path = Zemlo_Fs::GetGoodPath(QString::fromUtf8(c.given), QStringLiteral("/stage"),
                                               [&](const QString& p) { return taken.contains(p); });
    EXPECT_EQ(path, QString::fromUtf8(c.expected));
}

INSTANTIATE_TEST_SUITE_P(
    Table, GetGoodPath,
    ::testing::Values(
        NamingCase{"free", "photo.jpg", {}, "/stage/photo.jpg"},
        NamingCase{"skips_taken_numbers",
                   "photo.jpg",
                   {"/stage/photo.jpg", "/stage/photo_1.jpg"},
                   "/stage/photo_2.jpg"},
        NamingCase{"no_extension", "README", {"/stage/README"}, "/stage/README_1"},
        NamingCase{"last_dot_only", "a.tar.gz", {"/stage/a.tar.gz"}, "/stage/a.tar_1.gz"},
        NamingCase{
            "dot_file_has_no_extension", ".profile", {"/stage/.profile"}, "/stage/.profile_1"},
        NamingCase{"trailing_dot", "notes.", {"/stage/notes."}, "/stage/notes._1"},
        NamingCase{"images",
                   "image.png",
                   {"/stage/image.png", "/stage/image_1.png"},
                   "/stage/image_2.png"},
        NamingCase{"unicode", "résumé €.pdf", {"/stage/résumé €.pdf"}, "/stage/résumé €_1.pdf"},
        NamingCase{"parent_cannot_escape", "..", {}, "/stage/file"},
        NamingCase{"slash_cannot_escape", "../../etc/passwd", {}, "/stage/.._.._etc_passwd"},
        NamingCase{"empty_name", "", {}, "/stage/file"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(GetGoodPathOnDisk, SeesRealFilesAndDanglingLinks) {
    QTemporaryDir dir;
    velmora::test::writeFile(dir.filePath(QStringLiteral("photo.jpg")), "x");
    ASSERT_TRUE(QFile::link(dir.filePath(QStringLiteral("nowhere")),
                            dir.filePath(QStringLiteral("photo_1.jpg"))));
    EXPECT_EQ(Zemlo_Fs::GetGoodPath(QStringLiteral("photo.jpg"), dir.path()),
              dir.filePath(QStringLiteral("photo_2.jpg")));
}

} // namespace
