// Who makes Tilmora and where to find them: the maker's name, the links of the about page and the
// update endpoint. The values are set when Tilmora is built (CMake cache variables
// TILMORA_MAKER_NAME, TILMORA_CODE_URL, TILMORA_SOCIAL_URL, TILMORA_WEBSITE_URL and
// TILMORA_UPDATE_URL); a link left empty, or not http(s), is absent.
#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace tilmora::TilmoraBrand {

QString makerName();
QString rightsNotice();

// The code hosting profile, the social profile and the web site.
std::optional<QUrl> codeHostingURL();
std::optional<QUrl> socialProfileURL();
std::optional<QUrl> websiteURL();

// Read once. TILMORA_UPDATE_URL in the environment replaces the built-in endpoint (an empty
// value turns checking off), so that a test or a packager can point it elsewhere.
const std::optional<QUrl>& updateCheckURL();

} // namespace tilmora::TilmoraBrand
