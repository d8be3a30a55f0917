// One saved arrangement of windows, and the JSON document that holds a list of them.
#pragma once

#include "layouts/SavedWindowPlacement.h"

#include <QByteArray>
#include <QDateTime>
#include <QJsonValue>
#include <QString>
#include <QUuid>

#include <cstddef>
#include <optional>
#include <ostream>
#include <vector>

namespace tilmora {

struct SavedLayout {
    // Made at save time; layouts are deleted by it.
    QUuid id;
    // Need not be unique.
    QString name;
    // Stored to the whole second.
    QDateTime createdAt;
    // In the order of the window list at save time; may be empty when read.
    std::vector<SavedWindowPlacement> windows;

    // {"id":…,"name":…,"createdAt":…,"windows":[…]}, all four required.
    static std::optional<SavedLayout> fromJson(const QJsonValue& value);
    // Nothing when a frame or the date cannot be written.
    std::optional<QByteArray> encode() const;

    // A JSON array of layouts; nothing when the bytes are not one or any element fails, since
    // one bad element makes the whole document unreadable.
    static std::optional<std::vector<SavedLayout>> decodeList(const QByteArray& data);
    // Nothing when any layout cannot be written.
    static std::optional<QByteArray> encodeList(const std::vector<SavedLayout>& layouts);

    friend bool operator==(const SavedLayout&, const SavedLayout&) = default;
};

std::size_t qHash(const SavedLayout& layout, std::size_t seed = 0) noexcept;
std::ostream& operator<<(std::ostream& stream, const SavedLayout& layout);

} // namespace tilmora
