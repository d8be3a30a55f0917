// Both recorders driven by key sequences: what each records, when it beeps, and what its title
// says at the end.
#include "shortcuts/ShortcutRecorders.h"

#include <gtest/gtest.h>

#include <variant>

using namespace tilmora;

namespace {

constexpr std::uint64_t C = EventModifierFlags::control;
constexpr std::uint64_t O = EventModifierFlags::option;
constexpr std::uint64_t S = EventModifierFlags::shift;
constexpr std::uint64_t M = EventModifierFlags::command;
// Caps Lock's flag: not one of the four modifiers.
constexpr std::uint64_t capsLock = 0x010000;

struct Begin {};
struct Key {
    std::uint32_t code;
    std::uint64_t flags;
    const char* characters;
};
struct Flags {
    std::uint64_t held;
};
struct FocusLost {};
using Step = std::variant<Begin, Key, Flags, FocusLost>;

struct Sequence {
    const char* name;
    std::vector<Step> steps;
    // What each completed recording gave, in the recorder's own display text.
    std::vector<QString> recorded;
    int beeps;
    QString title;
};

constexpr Key escape{53, 0, "\x1b"};

// Plays the steps on a recorder, collecting what it recorded and how often it beeped.
template <typename Recorder, typename Show>
void play(const Sequence& sequence, Recorder& recorder, Show shown) {
    std::vector<QString> recorded;
    int beeps = 0;
    for (const Step& step : sequence.steps) {
        if (std::holds_alternative<Begin>(step)) {
            recorder.begin();
        } else if (const auto* key = std::get_if<Key>(&step)) {
            const KeyEvent event{key->code, key->flags, QString::fromUtf8(key->characters)};
            if constexpr (std::is_same_v<Recorder, HotKeyRecorder>) {
                const auto outcome = recorder.keyDown(event);
                beeps += outcome.response == RecorderResponse::beep;
                if (outcome.recorded) {
                    recorded.push_back(shown(*outcome.recorded));
                }
            } else {
                beeps += recorder.keyDown(event) == RecorderResponse::beep;
            }
        } else if (const auto* flags = std::get_if<Flags>(&step)) {
            if constexpr (std::is_same_v<Recorder, PlacementDragModifierRecorder>) {
                if (const auto chord = recorder.flagsChanged(flags->held)) {
                    recorded.push_back(shown(*chord));
                }
            }
        } else if constexpr (std::is_same_v<Recorder, PlacementDragModifierRecorder>) {
            recorder.focusLost();
        }
    }
    EXPECT_EQ(recorded, sequence.recorded);
    EXPECT_EQ(beeps, sequence.beeps);
    EXPECT_EQ(recorder.title(), sequence.title);
}

TEST(ShortcutRecordersTest, HotKeyRecorder) {
    const auto text = [](const HotKeyShortcut& s) { return s.displayText(); };
    // clang-format off
    const Sequence sequences[] = {
        {"IdleShowsTheShortcutAndPassesKeysOn", {Key{40, S, "k"}}, {}, 0, QStringLiteral("\u2303\u2325Space")},
        {"AKeyAloneBeepsAndRecordingGoesOn", {Begin{}, Key{40, 0, "k"}}, {}, 1, QStringLiteral("Type shortcut...")},
        {"ShiftKRecords", {Begin{}, Key{40, 0, "k"}, Key{40, S, "k"}}, {QStringLiteral("\u21e7K")}, 1, QStringLiteral("\u21e7K")},
        {"EscapeWithModifiersCancels", {Begin{}, Key{53, C | M, "\x1b"}}, {}, 0, QStringLiteral("\u2303\u2325Space")},
        {"FocusElsewhereKeepsRecording", {Begin{}, FocusLost{}}, {}, 0, QStringLiteral("Type shortcut...")},
        {"CommandKeysAreRecordedNotActedOn", {Begin{}, Key{12, M, "q"}}, {QStringLiteral("\u2318Q")}, 0, QStringLiteral("\u2318Q")},
    };
    // clang-format on
    for (const Sequence& sequence : sequences) {
        SCOPED_TRACE(sequence.name);
        HotKeyRecorder recorder;
        play(sequence, recorder, text);
    }
}

TEST(ShortcutRecordersTest, DragModifierRecorder) {
    const auto text = [](const PlacementDragModifier& m) {
        return PlacementDragModifierRecorder::displayText(m);
    };
    // clang-format off
    const Sequence sequences[] = {
        {"IdleShowsTheModifier", {Flags{C}, Flags{0}}, {}, 0, QStringLiteral("Super (\u2318)")},
        {"NothingPressedYet", {Begin{}}, {}, 0, QStringLiteral("Press modifiers...")},
        {"HeldChordShowsWhileHeld", {Begin{}, Flags{O}, Flags{O | M}}, {}, 0, QStringLiteral("Alt + Super (\u2325\u2318)")},
        {"OptionThenCommandReleasedRecordsBoth", {Begin{}, Flags{O}, Flags{O | M}, Flags{M}, Flags{0}}, {QStringLiteral("Alt + Super (\u2325\u2318)")}, 0, QStringLiteral("Alt + Super (\u2325\u2318)")},
        {"TheLargerChordWins", {Begin{}, Flags{C | O}, Flags{C}, Flags{0}}, {QStringLiteral("Control + Alt (\u2303\u2325)")}, 0, QStringLiteral("Control + Alt (\u2303\u2325)")},
        {"AnEqualChordReplaces", {Begin{}, Flags{C}, Flags{S}, Flags{0}}, {QStringLiteral("Shift (\u21e7)")}, 0, QStringLiteral("Shift (\u21e7)")},
        {"CapsLockRecordsNothing", {Begin{}, Flags{capsLock}, Flags{0}}, {}, 0, QStringLiteral("Press modifiers...")},
        {"AKeyBeeps", {Begin{}, Flags{C}, Key{40, C, "k"}}, {}, 1, QStringLiteral("Control (\u2303)")},
        {"EscapeCancels", {Begin{}, Flags{C}, Key{53, C, "\x1b"}, Flags{0}}, {}, 0, QStringLiteral("Super (\u2318)")},
        {"FocusElsewhereCancels", {Begin{}, Flags{O}, FocusLost{}, Flags{0}}, {}, 0, QStringLiteral("Super (\u2318)")},
    };
    // clang-format on
    for (const Sequence& sequence : sequences) {
        SCOPED_TRACE(sequence.name);
        PlacementDragModifierRecorder recorder;
        play(sequence, recorder, text);
    }
    EXPECT_EQ(PlacementDragModifierRecorder::displayText({}), QStringLiteral("None"));
}

TEST(ShortcutRecordersTest, AnOutsideChangeWaitsForTheRecordingToEnd) {
    HotKeyRecorder hotKey;
    hotKey.begin();
    hotKey.show(*HotKeyShortcut::fromEvent({40, S, QStringLiteral("k")}));
    EXPECT_EQ(hotKey.shortcut(), HotKeyShortcut::defaultShortcut());
    hotKey.keyDown({53, 0, std::nullopt});
    hotKey.show(*HotKeyShortcut::fromEvent({40, S, QStringLiteral("k")}));
    EXPECT_EQ(hotKey.title(), QStringLiteral("\u21e7K"));
}

} // namespace
