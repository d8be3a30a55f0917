#include "platform/WindowSystem.h"

#include <algorithm>

namespace tilmora {

std::optional<RunningApplication> WindowSystem::application(std::int32_t processIdentifier) const {
    const std::vector<RunningApplication> applications = runningApplications();
    const auto found =
        std::find_if(applications.begin(), applications.end(), [&](const auto& application) {
            return application.processIdentifier == processIdentifier;
        });
    if (found == applications.end()) {
        return std::nullopt;
    }
    return *found;
}

} // namespace tilmora
