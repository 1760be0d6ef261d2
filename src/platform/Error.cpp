#include "platform/Error.h"

#include <cstring>

namespace velmora {

Error Error::posix(int errnum, const QString& what) {
    return {QString::fromLatin1(kPosixErrorDomain), errnum,
            what + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errnum))};
}

} // namespace velmora
