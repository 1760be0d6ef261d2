// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "bridge/ExtensionUtilities.h"

using namespace velmora;
using velmora::test::ScopedEnv;

TEST(Container, BetaIdentifiersUseTheBetaDataFolder) {
    const struct {
        const char* id;
        const char* folder;
    } cases[] = {
        {"it.zemlo.velmora.beta8.share", "SharedDataBeta"},
        {"it.zemlo.velmora.beta10.share", "SharedDataBeta"},
        {"it.zemlo.velmora.betaX", "SharedDataBeta"},
        {"it.zemlo.velmora.share", "SharedData"},
        {"it.zemlo.velmora2.share", "SharedData"},
        {"IT.ZEMLO.VELMORA.BETA8.share", "SharedData"},
    };
    for (const auto& c : cases) {
        const ScopedEnv id("VELMORA_BUNDLE_ID", c.id);
        EXPECT_EQ(ExtensionUtilities::GroupFolderName(), QLatin1String(c.folder)) << c.id;
    }
}

TEST(Container, DataPathIsTheFolderInsideTheContainer) {
    const velmora::test::TempContainer container("it.zemlo.velmora.beta8.share");
    EXPECT_EQ(ExtensionUtilities::GroupPath(), container.root());
    EXPECT_EQ(ExtensionUtilities::GroupDataPath(),
              container.root() + QStringLiteral("/SharedDataBeta"));
}
