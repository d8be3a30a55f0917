// The application's name, version, build number and build date, compiled in by the build.
#pragma once

#include <QString>

#include <optional>

namespace tilmora::AppVersion {

// "Tilmora".
QString applicationName();
// The short version, "0.1.0".
QString current();
// The build number, "1" when the build did not set one.
QString build();
// The date the build was configured, as the build wrote it; nothing when it wrote none.
std::optional<QString> buildDate();

} // namespace tilmora::AppVersion
