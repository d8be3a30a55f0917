// The logging category of the X11 backend ("tilmora.x11"); X errors are logged at debug level.
#pragma once

#include <QLoggingCategory>

namespace tilmora {

Q_DECLARE_LOGGING_CATEGORY(lcX11)

} // namespace tilmora
