// What the command-line client and the instance say to each other over the instance's socket.
// Every message is one frame: a magic number, the protocol version, the kind and the payload's
// length, then the payload. The client sends one request (its arguments); the instance answers
// at once that it took it, then sends the reply (exit code, stdout, stderr) when the command
// has run. Plain C++: the client links no Qt.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tilmora::InstanceProtocol {

inline constexpr std::uint32_t magic = 0x524d4c54; // "TLMR" as bytes on the wire
inline constexpr std::uint16_t version = 1;
inline constexpr std::size_t headerSize = 12;
// Far above any listing; a length beyond it means the peer is not one of ours.
inline constexpr std::uint32_t maximumPayload = 64u << 20;

enum class Kind : std::uint16_t { request = 1, accepted = 2, reply = 3 };

struct Frame {
    Kind kind = Kind::request;
    std::string payload;

    friend bool operator==(const Frame&, const Frame&) = default;
};

struct Reply {
    int exitCode = 0;
    std::string out;
    std::string err;

    friend bool operator==(const Reply&, const Reply&) = default;
};

std::string encodeFrame(Kind kind, std::string_view payload);
std::string encodeRequest(const std::vector<std::string>& arguments);
std::string encodeReply(const Reply& reply);
// Nothing when the payload is not well formed.
std::optional<std::vector<std::string>> decodeRequest(std::string_view payload);
std::optional<Reply> decodeReply(std::string_view payload);

// Collects bytes as they arrive and cuts them into frames.
class FrameReader {
public:
    enum class Status { incomplete, frame, badMagic, badVersion, badKind, tooLong };

    void append(std::string_view bytes) { buffer_.append(bytes); }
    // The next whole frame into `frame`; after an error every later call repeats it.
    Status next(Frame& frame);

private:
    std::string buffer_;
    std::optional<Status> error_;
};

// The one-line reason for a frame error, for messages.
std::string describe(FrameReader::Status status);

} // namespace tilmora::InstanceProtocol
