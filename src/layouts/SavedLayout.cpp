#include "layouts/SavedLayout.h"

#include "geometry/JsonCoding.h"
#include "layouts/LayoutJson.h"

#include <QHashFunctions>
#include <QJsonArray>
#include <QJsonObject>

namespace tilmora {

namespace {

const QString idKey = QStringLiteral("id");
const QString nameKey = QStringLiteral("name");
const QString createdAtKey = QStringLiteral("createdAt");
const QString windowsKey = QStringLiteral("windows");

} // namespace

std::optional<SavedLayout> SavedLayout::fromJson(const QJsonValue& value) {
    if (!value.isObject()) {
        return std::nullopt;
    }
    const QJsonObject object = value.toObject();
    const auto id = layoutjson::toUuid(object.value(idKey));
    const auto name = json::toString(object.value(nameKey));
    const auto createdAt = layoutjson::toDate(object.value(createdAtKey));
    const QJsonValue windowsValue = object.value(windowsKey);
    if (!id || !name || !createdAt || !windowsValue.isArray()) {
        return std::nullopt;
    }
    auto windows = json::decodeArray(windowsValue.toArray(), SavedWindowPlacement::fromJson);
    if (!windows) {
        return std::nullopt;
    }
    return SavedLayout{*id, *name, *createdAt, std::move(*windows)};
}

std::optional<QByteArray> SavedLayout::encode() const {
    const auto date = layoutjson::dateText(createdAt);
    if (!date) {
        return std::nullopt;
    }
    const auto encodedWindows =
        json::encodeArray(windows, [](const SavedWindowPlacement& w) { return w.encode(); });
    if (!encodedWindows) {
        return std::nullopt;
    }
    return json::writeEncodedObject({{idKey, json::writeValue(layoutjson::uuidText(id))},
                                     {nameKey, json::writeValue(name)},
                                     {createdAtKey, json::writeValue(*date)},
                                     {windowsKey, *encodedWindows}});
}

std::optional<std::vector<SavedLayout>> SavedLayout::decodeList(const QByteArray& data) {
    const auto array = json::parseArray(data);
    if (!array) {
        return std::nullopt;
    }
    return json::decodeArray(*array, fromJson);
}

std::optional<QByteArray> SavedLayout::encodeList(const std::vector<SavedLayout>& layouts) {
    return json::encodeArray(layouts, [](const SavedLayout& layout) { return layout.encode(); });
}

std::size_t qHash(const SavedLayout& layout, std::size_t seed) noexcept {
    seed = qHashMulti(seed, layout.id, layout.name, layout.createdAt);
    return qHashRange(layout.windows.begin(), layout.windows.end(), seed);
}

std::ostream& operator<<(std::ostream& stream, const SavedLayout& layout) {
    stream << "layout " << layoutjson::uuidText(layout.id).toStdString() << " \""
           << layout.name.toStdString() << "\" "
           << layout.createdAt.toUTC().toString(Qt::ISODateWithMs).toStdString() << " [";
    for (std::size_t i = 0; i < layout.windows.size(); ++i) {
        stream << (i > 0 ? "; " : "") << layout.windows[i];
    }
    return stream << "]";
}

} // namespace tilmora
