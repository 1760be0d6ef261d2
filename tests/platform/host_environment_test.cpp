// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "platform/HostEnvironment.h"

#include <QFileInfo>

using namespace velmora;
using velmora::test::ScopedEnv;

// Unset or empty variables: the build's bundle identifier, a container under XDG_DATA_HOME.
TEST(HostEnvironment, DefaultsWhenTheEnvironmentSaysNothing) {
    QTemporaryDir home;
    const ScopedEnv data("XDG_DATA_HOME", QFile::encodeName(home.path()));
    const ScopedEnv container("VELMORA_GROUP_CONTAINER", "");
    const ScopedEnv id("VELMORA_BUNDLE_ID", "");
    EXPECT_EQ(HostEnvironment::bundleIdentifier(), QStringLiteral("it.zemlo.velmora.share"));
    const QString path =
        HostEnvironment::containerPathForGroupIdentifier(QStringLiteral("7QK4M2HXWD.velmora"));
    EXPECT_EQ(path, home.path() + QStringLiteral("/velmora/7QK4M2HXWD.velmora"));
    EXPECT_TRUE(QFileInfo(path).isDir());
}
