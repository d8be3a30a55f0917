#include "platform/file/FileCalls.h"

#include <cstdio>

#include <unistd.h>

namespace tilmora {

ssize_t FileCalls::write(int descriptor, const void* data, std::size_t size) {
    return ::write(descriptor, data, size);
}

int FileCalls::fsync(int descriptor) {
    return ::fsync(descriptor);
}

int FileCalls::close(int descriptor) {
    return ::close(descriptor);
}

int FileCalls::rename(const char* from, const char* to) {
    return ::rename(from, to);
}

FileCalls& FileCalls::system() {
    static FileCalls calls;
    return calls;
}

} // namespace tilmora
