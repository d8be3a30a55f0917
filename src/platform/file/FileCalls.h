// The system calls by which a file is replaced. Virtual so that tests can make any of them fail
// as a full disk or a failing device makes them fail.
#pragma once

#include <cstddef>

#include <sys/types.h>

namespace tilmora {

class FileCalls {
public:
    virtual ~FileCalls() = default;

    virtual ssize_t write(int descriptor, const void* data, std::size_t size);
    virtual int fsync(int descriptor);
    virtual int close(int descriptor);
    virtual int rename(const char* from, const char* to);

    // The calls as the system makes them.
    static FileCalls& system();
};

} // namespace tilmora
