#include "views/UiLogging.h"

namespace velmora {

Q_LOGGING_CATEGORY(lcUi, "velmora.ui", QtInfoMsg)

} // namespace velmora
