// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/Error.h"

#include <cstring>

namespace velmora {

Error Error::posix(int errnum, const QString& what) {
    return {QString::fromLatin1(kPosixErrorDomain), errnum,
            what + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errnum))};
}

Error Error::userCancelled() {
    return {QString::fromLatin1(kCocoaErrorDomain), kUserCancelledErrorCode,
            QStringLiteral("The operation was cancelled.")};
}

} // namespace velmora
