#include "platform/x11/X11WorkArea.h"

#include <array>

namespace tilmora {

namespace {

enum class Side { left, right, top, bottom };

struct SideRect {
    Side side;
    X11Rect rect;
};

std::vector<SideRect> sideRectangles(const X11Strut& s, std::int64_t rootWidth,
                                     std::int64_t rootHeight) {
    std::vector<SideRect> result;
    const auto span = [](std::int64_t start, std::int64_t end) {
        return end >= start ? end - start + 1 : 0;
    };
    if (s.left > 0) {
        result.push_back({Side::left, {0, s.leftStartY, s.left, span(s.leftStartY, s.leftEndY)}});
    }
    if (s.right > 0) {
        result.push_back(
            {Side::right,
             {rootWidth - s.right, s.rightStartY, s.right, span(s.rightStartY, s.rightEndY)}});
    }
    if (s.top > 0) {
        result.push_back({Side::top, {s.topStartX, 0, span(s.topStartX, s.topEndX), s.top}});
    }
    if (s.bottom > 0) {
        result.push_back({Side::bottom,
                          {s.bottomStartX, rootHeight - s.bottom,
                           span(s.bottomStartX, s.bottomEndX), s.bottom}});
    }
    std::erase_if(result, [](const SideRect& r) { return r.rect.isEmpty(); });
    return result;
}

} // namespace

std::vector<X11Rect> strutRectangles(const X11Strut& strut, std::int64_t rootWidth,
                                     std::int64_t rootHeight) {
    std::vector<X11Rect> result;
    for (const SideRect& side : sideRectangles(strut, rootWidth, rootHeight)) {
        result.push_back(side.rect);
    }
    return result;
}

X11Rect largestRemainder(const X11Rect& area, const X11Rect& hole) {
    const X11Rect cut = area.intersected(hole);
    if (cut.isEmpty()) {
        return area;
    }
    const std::array<X11Rect, 4> parts{{
        {area.x, area.y, cut.x - area.x, area.height},
        {cut.right(), area.y, area.right() - cut.right(), area.height},
        {area.x, area.y, area.width, cut.y - area.y},
        {area.x, cut.bottom(), area.width, area.bottom() - cut.bottom()},
    }};
    X11Rect best{area.x, area.y, 0, 0};
    for (const X11Rect& part : parts) {
        if (part.area() > best.area()) {
            best = part;
        }
    }
    return best;
}

std::vector<X11Rect> usableAreas(const std::vector<X11Rect>& monitors,
                                 const std::vector<X11Strut>& struts, std::int64_t rootWidth,
                                 std::int64_t rootHeight) {
    std::vector<X11Rect> result;
    for (const X11Rect& monitor : monitors) {
        X11Rect usable = monitor;
        for (const X11Strut& strut : struts) {
            for (const SideRect& side : sideRectangles(strut, rootWidth, rootHeight)) {
                const X11Rect cut = side.rect.intersected(monitor);
                if (cut.isEmpty()) {
                    continue;
                }
                const bool horizontal = side.side == Side::left || side.side == Side::right;
                if (horizontal ? cut.width >= monitor.width : cut.height >= monitor.height) {
                    continue;
                }
                usable = largestRemainder(usable, cut);
            }
        }
        result.push_back(usable);
    }
    return result;
}

std::vector<X11Rect> matchWorkAreas(const std::vector<X11Rect>& monitors,
                                    const std::vector<X11Rect>& workAreas) {
    std::vector<X11Rect> result;
    for (const X11Rect& monitor : monitors) {
        X11Rect best = monitor;
        std::int64_t bestArea = 0;
        for (const X11Rect& area : workAreas) {
            const X11Rect overlap = area.intersected(monitor);
            if (overlap.area() > bestArea) {
                best = overlap;
                bestArea = overlap.area();
            }
        }
        result.push_back(best);
    }
    return result;
}

} // namespace tilmora
