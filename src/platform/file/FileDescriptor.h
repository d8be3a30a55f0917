// An open file descriptor, closed when it goes out of scope unless it was released. No Qt: the
// client without Qt uses it too.
#pragma once

#include <utility>

#include <unistd.h>

namespace tilmora {

class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor)
        : descriptor_(descriptor) {}
    ~FileDescriptor() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    int get() const { return descriptor_; }
    // Hands the descriptor over: it is no longer closed here.
    int release() { return std::exchange(descriptor_, -1); }

private:
    int descriptor_;
};

} // namespace tilmora
