// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "platform/HostEnvironment.h"

#include <QDir>
#include <QFileInfo>

using namespace velmora;
using velmora::test::ScopedEnv;

TEST(HostEnvironment, BundleIdentifierFromEnvironmentOrBuildDefault) {
    {
        const ScopedEnv id("VELMORA_BUNDLE_ID", "it.zemlo.velmora.beta8.share");
        EXPECT_EQ(HostEnvironment::bundleIdentifier(),
                  QStringLiteral("it.zemlo.velmora.beta8.share"));
    }
    const ScopedEnv empty("VELMORA_BUNDLE_ID", "");
    EXPECT_EQ(HostEnvironment::bundleIdentifier(), QStringLiteral("it.zemlo.velmora.share"));
}

TEST(HostEnvironment, ContainerIsMadeUnderXdgDataHomeWhenNotGiven) {
    QTemporaryDir home;
    const ScopedEnv data("XDG_DATA_HOME", QFile::encodeName(home.path()));
    const ScopedEnv container("VELMORA_GROUP_CONTAINER", "");
    const QString path =
        HostEnvironment::containerPathForGroupIdentifier(QStringLiteral("7QK4M2HXWD.velmora"));
    EXPECT_EQ(path, home.path() + QStringLiteral("/velmora/7QK4M2HXWD.velmora"));
    EXPECT_TRUE(QFileInfo(path).isDir());
}

TEST(HostEnvironment, GivenContainerIsCreatedOrNullWhenImpossible) {
    QTemporaryDir dir;
    {
        const ScopedEnv container("VELMORA_GROUP_CONTAINER",
                                  QFile::encodeName(dir.path() + QStringLiteral("/a/b")));
        EXPECT_EQ(HostEnvironment::containerPathForGroupIdentifier(QStringLiteral("g")),
                  dir.path() + QStringLiteral("/a/b"));
        EXPECT_TRUE(QFileInfo(dir.path() + QStringLiteral("/a/b")).isDir());
    }
    velmora::test::writeFile(dir.path() + QStringLiteral("/file"), "x");
    const ScopedEnv container("VELMORA_GROUP_CONTAINER",
                              QFile::encodeName(dir.path() + QStringLiteral("/file/sub")));
    EXPECT_TRUE(HostEnvironment::containerPathForGroupIdentifier(QStringLiteral("g")).isNull());
}
