// Owning pointers for what xcb hands out with malloc: replies, errors and events.
#pragma once

#include <cstdlib>
#include <memory>

namespace tilmora {

struct X11Free {
    void operator()(void* pointer) const { std::free(pointer); }
};

template <typename T>
using X11Reply = std::unique_ptr<T, X11Free>;

} // namespace tilmora
