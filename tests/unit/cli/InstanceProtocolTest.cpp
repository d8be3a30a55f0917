// The addresses and messages that the client and the instance share.
#include "cli/InstanceProtocol.h"
#include "cli/InstanceAddress.h"

#include <gtest/gtest.h>

namespace tilmora {
namespace {

using namespace InstanceProtocol;
using Status = FrameReader::Status;

struct AddressCase {
    const char* name;
    const char* display;
    const char* runtimeDirectory;
    const char* socketPath;
};

class InstanceAddressTest : public testing::TestWithParam<AddressCase> {};

// Client and instance must arrive at the same path from however DISPLAY is written.
TEST_P(InstanceAddressTest, OnePathPerDisplay) {
    const InstanceAddress address =
        InstanceAddress::make(GetParam().display, GetParam().runtimeDirectory, 1000);
    EXPECT_EQ(address.socketPath, GetParam().socketPath);
    EXPECT_EQ(address.lockPath, address.socketPath + ".lock");
}

INSTANTIATE_TEST_SUITE_P(
    Cli, InstanceAddressTest,
    testing::Values(
        AddressCase{"PlainDisplay", ":0", "/run/user/1000", "/run/user/1000/tilmora/:0"},
        AddressCase{"ScreenSuffix", ":0.1", "/run/user/1000", "/run/user/1000/tilmora/:0"},
        AddressCase{"UnixHost", "unix:3.0", "/run/user/1000", "/run/user/1000/tilmora/:3"},
        AddressCase{"ForwardedHost", "localhost:10.0", "/r", "/r/tilmora/localhost:10"},
        AddressCase{"SocketPathForm", "/tmp/launch-Ab/org.x:0", "/r",
                    "/r/tilmora/_tmp_launch-Ab_org.x:0"},
        AddressCase{"NoRuntimeDirectory", ":0", "", "/tmp/tilmora-1000/:0"},
        AddressCase{"RelativeRuntimeDirectory", ":0", "run/user", "/tmp/tilmora-1000/:0"}),
    [](const testing::TestParamInfo<AddressCase>& p) { return std::string(p.param.name); });

TEST(InstanceAddress, RefusesASocketPathLongerThanASocketAddressHolds) {
    EXPECT_FALSE(InstanceAddress::make(":0", "/run/user/1000", 1000).problem());
    EXPECT_TRUE(InstanceAddress::make(":0", "/" + std::string(120, 'r'), 1000).problem());
}

std::string header(std::uint32_t magicNumber, std::uint16_t protocol, std::uint16_t kind,
                   std::uint32_t length) {
    std::string frame = encodeFrame(Kind::request, {});
    for (int i = 0; i < 4; ++i) {
        frame[i] = static_cast<char>((magicNumber >> (8 * i)) & 0xff);
        frame[8 + i] = static_cast<char>((length >> (8 * i)) & 0xff);
    }
    frame[4] = static_cast<char>(protocol & 0xff);
    frame[5] = static_cast<char>(protocol >> 8);
    frame[6] = static_cast<char>(kind & 0xff);
    frame[7] = static_cast<char>(kind >> 8);
    return frame;
}

struct FrameCase {
    const char* name;
    std::string bytes;
    Status status;
};

class FrameReaderTest : public testing::TestWithParam<FrameCase> {};

TEST_P(FrameReaderTest, TellsForeignAndUnfinishedFramesApart) {
    FrameReader reader;
    reader.append(GetParam().bytes);
    Frame frame;
    EXPECT_EQ(reader.next(frame), GetParam().status);
}

const std::string request = encodeRequest({"windows"});

INSTANTIATE_TEST_SUITE_P(
    Cli, FrameReaderTest,
    testing::Values(
        FrameCase{"Whole", request, Status::frame},
        FrameCase{"HeaderCutShort", request.substr(0, headerSize - 1), Status::incomplete},
        FrameCase{"PayloadCutShort", request.substr(0, request.size() - 1), Status::incomplete},
        FrameCase{"ForeignMagic", header(0x50545448, version, 1, 0), Status::badMagic},
        FrameCase{"OtherVersion", header(magic, version + 1, 1, 0), Status::badVersion},
        FrameCase{"UnknownKind", header(magic, version, 9, 0), Status::badKind},
        FrameCase{"LongerThanAnyMessage", header(magic, version, 1, maximumPayload + 1),
                  Status::tooLong}),
    [](const testing::TestParamInfo<FrameCase>& p) { return std::string(p.param.name); });

// A conversation arrives in pieces of any size: each piece size gives back the same messages.
TEST(FrameReader, CutsAStreamIntoItsMessagesWhateverThePieces) {
    const std::vector<std::string> arguments{"", "--window", std::string("nul\0in", 6), "Straße\n"};
    const Reply reply{2, "out\n", std::string("err\0\xff", 5)};
    const std::string stream =
        encodeRequest(arguments) + encodeFrame(Kind::accepted, {}) + encodeReply(reply);
    for (std::size_t piece : {std::size_t{1}, std::size_t{7}, stream.size()}) {
        FrameReader reader;
        std::vector<Frame> frames;
        for (std::size_t at = 0; at < stream.size(); at += piece) {
            reader.append(std::string_view(stream).substr(at, piece));
            Frame frame;
            while (reader.next(frame) == Status::frame) {
                frames.push_back(frame);
            }
        }
        ASSERT_EQ(frames.size(), 3u) << piece;
        EXPECT_EQ(decodeRequest(frames[0].payload), arguments);
        EXPECT_EQ(frames[1].kind, Kind::accepted);
        EXPECT_EQ(decodeReply(frames[2].payload), reply);
    }
}

// A payload cut anywhere, or with bytes left over, is refused rather than read past its end.
TEST(FrameReader, PayloadsCutShortOrOverlongAreRefused) {
    Frame requestFrame;
    Frame replyFrame;
    FrameReader reader;
    reader.append(encodeRequest({"save", "Desk"}) + encodeReply({1, "a", "b"}));
    ASSERT_EQ(reader.next(requestFrame), Status::frame);
    ASSERT_EQ(reader.next(replyFrame), Status::frame);
    for (std::size_t length = 0; length < requestFrame.payload.size(); ++length) {
        EXPECT_FALSE(decodeRequest(requestFrame.payload.substr(0, length))) << length;
    }
    for (std::size_t length = 0; length < replyFrame.payload.size(); ++length) {
        EXPECT_FALSE(decodeReply(replyFrame.payload.substr(0, length))) << length;
    }
    EXPECT_FALSE(decodeRequest(requestFrame.payload + 'x'));
    EXPECT_FALSE(decodeReply(replyFrame.payload + 'x'));
}

} // namespace
} // namespace tilmora
