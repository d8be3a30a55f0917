#include "geometry/DisplayLayoutProfile.h"

#include "geometry/JsonCoding.h"

#include <QHashFunctions>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <unordered_set>

namespace tilmora {

const std::set<std::int64_t> DisplayLayoutProfile::legacyDefaultRows{1, 2};

std::int64_t DisplayLayoutProfile::clampedColumns(std::int64_t columns) {
    return std::clamp(columns, minimumColumns, maximumColumns);
}

std::int64_t DisplayLayoutProfile::clampedRows(std::int64_t rows) {
    return std::clamp(rows, minimumRows, maximumRows);
}

double DisplayLayoutProfile::clampedGap(double gap) {
    if (!std::isfinite(gap)) {
        return 0;
    }
    return std::clamp(gap, minimumGap, maximumGap);
}

std::vector<DisplayLayoutProfile>
DisplayLayoutProfile::normalized(const std::vector<DisplayLayoutProfile>& profiles,
                                 bool migratingToEdgeToEdge, bool migratingDefaultGridToCurrent) {
    std::unordered_set<std::uint32_t> seen;
    std::vector<DisplayLayoutProfile> result;
    for (const DisplayLayoutProfile& profile : profiles) {
        if (!seen.insert(profile.id).second) {
            continue;
        }
        DisplayLayoutProfile next = profile;
        next.gap = migratingToEdgeToEdge ? 0 : profile.gap;
        const bool legacyDefaultGrid = profile.columns == 3 &&
                                       legacyDefaultRows.contains(profile.rows) &&
                                       (profile.gap == 8 || profile.gap == 0);
        if (migratingDefaultGridToCurrent && legacyDefaultGrid) {
            next.columns = 2;
            next.rows = 1;
        }
        next.columns = clampedColumns(next.columns);
        next.rows = clampedRows(next.rows);
        next.gap = clampedGap(next.gap);
        result.push_back(next);
    }
    return result;
}

std::optional<DisplayLayoutProfile> DisplayLayoutProfile::fromJson(const QJsonObject& object) {
    const auto id = json::toUInt32(object.value(QLatin1String("id")));
    const auto displayName = json::toString(object.value(QLatin1String("displayName")));
    const auto columns = json::toInt64(object.value(QLatin1String("columns")));
    const auto rows = json::toInt64(object.value(QLatin1String("rows")));
    const auto gap = json::toDouble(object.value(QLatin1String("gap")));
    if (!id || !displayName || !columns || !rows || !gap) {
        return std::nullopt;
    }
    return DisplayLayoutProfile{*id, *displayName, *columns, *rows, *gap};
}

std::optional<QByteArray> DisplayLayoutProfile::encode() const {
    if (!std::isfinite(gap)) {
        return std::nullopt;
    }
    return json::writeObject({{QStringLiteral("id"), static_cast<qint64>(id)},
                              {QStringLiteral("displayName"), displayName},
                              {QStringLiteral("columns"), static_cast<qint64>(columns)},
                              {QStringLiteral("rows"), static_cast<qint64>(rows)},
                              {QStringLiteral("gap"), gap}});
}

std::optional<std::vector<DisplayLayoutProfile>>
DisplayLayoutProfile::decodeList(const QByteArray& data) {
    const auto array = json::parseArray(data);
    if (!array) {
        return std::nullopt;
    }
    return json::decodeArray(*array, [](const QJsonValue& element) {
        return element.isObject() ? fromJson(element.toObject()) : std::nullopt;
    });
}

std::optional<QByteArray>
DisplayLayoutProfile::encodeList(const std::vector<DisplayLayoutProfile>& profiles) {
    return json::encodeArray(profiles, [](const DisplayLayoutProfile& p) { return p.encode(); });
}

size_t qHash(const DisplayLayoutProfile& profile, size_t seed) {
    // +0 and -0 compare equal, so they must hash alike.
    const double gap = profile.gap == 0 ? 0.0 : profile.gap;
    return qHashMulti(seed, profile.id, profile.displayName, profile.columns, profile.rows, gap);
}

std::ostream& operator<<(std::ostream& stream, const DisplayLayoutProfile& profile) {
    return stream << "profile " << profile.id << " \"" << profile.displayName.toStdString() << "\" "
                  << profile.columns << "x" << profile.rows << " gap " << profile.gap;
}

} // namespace tilmora
