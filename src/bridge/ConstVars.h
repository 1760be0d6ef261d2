// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QLatin1String>

// Names shared with the main application's other programs: bundle identifiers of its builds
// and the commands its "velmora" URL scheme understands.
namespace velmora::ConstVars {

inline constexpr QLatin1String it_zemlo_velmora_beta8("it.zemlo.velmora.beta8");
inline constexpr QLatin1String it_zemlo_velmora_beta10("it.zemlo.velmora.beta10");
inline constexpr QLatin1String it_zemlo_velmora("it.zemlo.velmora");
inline constexpr QLatin1String it_zemlo_velmora_2("it.zemlo.velmora2");
inline constexpr QLatin1String it_zemlo_velmora_pro("it.zemlo.velmora.pro");

inline constexpr QLatin1String commandArchive("archive");
inline constexpr QLatin1String commandDelete("delete");
inline constexpr QLatin1String commandReply("reply");
inline constexpr QLatin1String commandMessage("message");
inline constexpr QLatin1String commandCompose("compose");
inline constexpr QLatin1String commandSend("send");
inline constexpr QLatin1String commandOpen("open");

// Posted in this process for every message a command is sent to the main application for.
inline constexpr QLatin1String actionCalledExtension("ACTION_CALLED_EXTENSION");

// The container that this program shares with the main application.
inline constexpr QLatin1String applicationGroupIdentifier("7QK4M2HXWD.velmora");
inline constexpr QLatin1String releaseDataFolder("SharedData");
inline constexpr QLatin1String betaDataFolder("SharedDataBeta");
inline constexpr QLatin1String betaBundlePrefix("it.zemlo.velmora.beta");

// The service name of the share composer; it names its staging folder.
inline constexpr QLatin1String shareService("ShareFull");

} // namespace velmora::ConstVars
