#include "cli/InstanceProtocol.h"

namespace tilmora::InstanceProtocol {

namespace {

void putU32(std::string& out, std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) {
        out.push_back(static_cast<char>((value >> shift) & 0xff));
    }
}

void putU16(std::string& out, std::uint16_t value) {
    out.push_back(static_cast<char>(value & 0xff));
    out.push_back(static_cast<char>(value >> 8));
}

void putBytes(std::string& out, std::string_view bytes) {
    putU32(out, static_cast<std::uint32_t>(bytes.size()));
    out.append(bytes);
}

std::uint32_t readU32(std::string_view bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (int i = 3; i >= 0; --i) {
        value = (value << 8) | static_cast<unsigned char>(bytes[at + i]);
    }
    return value;
}

std::uint16_t readU16(std::string_view bytes, std::size_t at) {
    return static_cast<std::uint16_t>(static_cast<unsigned char>(bytes[at]) |
                                      (static_cast<unsigned char>(bytes[at + 1]) << 8));
}

// Reads length-prefixed fields from a payload, failing once it runs past the end.
class PayloadCursor {
public:
    explicit PayloadCursor(std::string_view payload)
        : payload_(payload) {}

    std::optional<std::uint32_t> u32() {
        if (payload_.size() - at_ < 4) {
            return std::nullopt;
        }
        const std::uint32_t value = readU32(payload_, at_);
        at_ += 4;
        return value;
    }

    std::optional<std::string> bytes() {
        const auto length = u32();
        if (!length || payload_.size() - at_ < *length) {
            return std::nullopt;
        }
        std::string value(payload_.substr(at_, *length));
        at_ += *length;
        return value;
    }

    bool atEnd() const { return at_ == payload_.size(); }

private:
    std::string_view payload_;
    std::size_t at_ = 0;
};

} // namespace

std::string encodeFrame(Kind kind, std::string_view payload) {
    std::string frame;
    frame.reserve(headerSize + payload.size());
    putU32(frame, magic);
    putU16(frame, version);
    putU16(frame, static_cast<std::uint16_t>(kind));
    putU32(frame, static_cast<std::uint32_t>(payload.size()));
    frame.append(payload);
    return frame;
}

std::string encodeRequest(const std::vector<std::string>& arguments) {
    std::string payload;
    putU32(payload, static_cast<std::uint32_t>(arguments.size()));
    for (const std::string& argument : arguments) {
        putBytes(payload, argument);
    }
    return encodeFrame(Kind::request, payload);
}

std::string encodeReply(const Reply& reply) {
    std::string payload;
    putU32(payload, static_cast<std::uint32_t>(reply.exitCode));
    putBytes(payload, reply.out);
    putBytes(payload, reply.err);
    return encodeFrame(Kind::reply, payload);
}

std::optional<std::vector<std::string>> decodeRequest(std::string_view payload) {
    PayloadCursor cursor(payload);
    const auto count = cursor.u32();
    if (!count) {
        return std::nullopt;
    }
    std::vector<std::string> arguments;
    for (std::uint32_t i = 0; i < *count; ++i) {
        auto argument = cursor.bytes();
        if (!argument) {
            return std::nullopt;
        }
        arguments.push_back(std::move(*argument));
    }
    return cursor.atEnd() ? std::optional(std::move(arguments)) : std::nullopt;
}

std::optional<Reply> decodeReply(std::string_view payload) {
    PayloadCursor cursor(payload);
    const auto exitCode = cursor.u32();
    auto out = cursor.bytes();
    auto err = cursor.bytes();
    if (!exitCode || !out || !err || !cursor.atEnd()) {
        return std::nullopt;
    }
    return Reply{static_cast<int>(*exitCode), std::move(*out), std::move(*err)};
}

FrameReader::Status FrameReader::next(Frame& frame) {
    if (error_) {
        return *error_;
    }
    if (buffer_.size() < headerSize) {
        return Status::incomplete;
    }
    const std::uint16_t kind = readU16(buffer_, 6);
    const std::uint32_t length = readU32(buffer_, 8);
    if (readU32(buffer_, 0) != magic) {
        error_ = Status::badMagic;
    } else if (readU16(buffer_, 4) != version) {
        error_ = Status::badVersion;
    } else if (kind < static_cast<std::uint16_t>(Kind::request) ||
               kind > static_cast<std::uint16_t>(Kind::reply)) {
        error_ = Status::badKind;
    } else if (length > maximumPayload) {
        error_ = Status::tooLong;
    }
    if (error_) {
        return *error_;
    }
    if (buffer_.size() - headerSize < length) {
        return Status::incomplete;
    }
    frame.kind = static_cast<Kind>(kind);
    frame.payload.assign(buffer_, headerSize, length);
    buffer_.erase(0, headerSize + length);
    return Status::frame;
}

std::string describe(FrameReader::Status status) {
    switch (status) {
    case FrameReader::Status::badMagic:
        return "the peer does not speak Tilmora's protocol";
    case FrameReader::Status::badVersion:
        return "the peer speaks another version of Tilmora's protocol";
    case FrameReader::Status::badKind:
        return "the peer sent a message of an unknown kind";
    case FrameReader::Status::tooLong:
        return "the peer sent a message longer than any Tilmora sends";
    case FrameReader::Status::incomplete:
    case FrameReader::Status::frame:
        break;
    }
    return "the peer's message ended early";
}

} // namespace tilmora::InstanceProtocol
