// A display's own placement grid: columns, rows and the gap between cells, keyed by the display
// number. Stored as a JSON array; loaded lists are normalised once per launch.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

namespace tilmora {

struct DisplayLayoutProfile {
    static constexpr std::int64_t minimumColumns = 1;
    static constexpr std::int64_t maximumColumns = 8;
    static constexpr std::int64_t minimumRows = 1;
    static constexpr std::int64_t maximumRows = 6;
    static constexpr double minimumGap = 0;
    static constexpr double maximumGap = 32;
    // Together with three columns, the row counts of the grid earlier versions made by default.
    static const std::set<std::int64_t> legacyDefaultRows;

    std::uint32_t id = 0;
    QString displayName;
    std::int64_t columns = 2;
    std::int64_t rows = 1;
    double gap = 0;

    friend bool operator==(const DisplayLayoutProfile&, const DisplayLayoutProfile&) = default;

    // Drops later duplicates of an id, runs the two one-time migrations (the default-grid test
    // looks at the gap as stored, before the edge-to-edge migration zeroes it) and brings every
    // value into range.
    static std::vector<DisplayLayoutProfile>
    normalized(const std::vector<DisplayLayoutProfile>& profiles, bool migratingToEdgeToEdge,
               bool migratingDefaultGridToCurrent);

    // Values in range: columns 1 ... 8, rows 1 ... 6, gap 0 ... 32 with non-finite gaps as 0.
    static std::int64_t clampedColumns(std::int64_t columns);
    static std::int64_t clampedRows(std::int64_t rows);
    static double clampedGap(double gap);

    // All five keys are required with their types; unknown keys are ignored; ranges are not
    // checked here.
    static std::optional<DisplayLayoutProfile> fromJson(const QJsonObject& object);
    // Nothing when the gap is not finite: JSON has no form for it.
    std::optional<QByteArray> encode() const;

    // Nothing when any element is malformed.
    static std::optional<std::vector<DisplayLayoutProfile>> decodeList(const QByteArray& data);
    static std::optional<QByteArray> encodeList(const std::vector<DisplayLayoutProfile>& profiles);
};

size_t qHash(const DisplayLayoutProfile& profile, size_t seed = 0);
std::ostream& operator<<(std::ostream& stream, const DisplayLayoutProfile& profile);

} // namespace tilmora
