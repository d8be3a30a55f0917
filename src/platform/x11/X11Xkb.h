// xcb/xkb.h, readable from C++: it names a struct member `explicit`, which is renamed while
// the header is read.
#pragma once

#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
