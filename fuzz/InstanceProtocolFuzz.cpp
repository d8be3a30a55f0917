// What arrives on the instance's socket, from a client or from the instance: frames cut from a
// byte stream, then requests and replies decoded from their payloads.
#include "FuzzCheck.h"
#include "cli/InstanceProtocol.h"

#include <cstddef>
#include <cstdint>

using namespace tilmora::InstanceProtocol;

namespace {
std::string_view payloadOf(std::string_view frame) {
    return frame.substr(headerSize);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    // Bytes arrive in pieces: a frame split anywhere reads as the same frame.
    FrameReader reader;
    reader.append(bytes.substr(0, size / 2));
    reader.append(bytes.substr(size / 2));
    Frame frame;
    while (reader.next(frame) == FrameReader::Status::frame) {
        TILMORA_FUZZ_CHECK(frame.payload.size() <= maximumPayload);
    }
    if (const auto request = decodeRequest(bytes)) {
        const std::string written = encodeRequest(*request);
        TILMORA_FUZZ_CHECK(decodeRequest(payloadOf(written)) == request);
    }
    if (const auto reply = decodeReply(bytes)) {
        const std::string written = encodeReply(*reply);
        TILMORA_FUZZ_CHECK(decodeReply(payloadOf(written)) == reply);
    }
    return 0;
}
