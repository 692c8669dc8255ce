#include "framework/NoteText.h"

#include "base/NumberText.h"
#include "framework/NumberFormat.h"
#include "framework/TextHelpers.h"

#include <array>
#include <cmath>
#include <cstdint>

namespace {

constexpr std::array<int, 7> semitoneOfLetter{9, 11, 0, 2, 4, 5, 7}; // A to G
constexpr std::array<std::string_view, 12> noteNames{"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};

} // namespace

bool parseNote(std::string_view text, double& log2Hz) {
    std::string_view rest = withoutBlanks(text);
    if (rest.empty())
        return false;
    const char letter = upperCase(rest.front());
    if (letter < 'A' || letter > 'G')
        return false;
    rest.remove_prefix(1);
    int semitone = semitoneOfLetter[static_cast<std::size_t>(letter - 'A')];
    if (!rest.empty() && (rest.front() == '#' || upperCase(rest.front()) == 'B')) {
        semitone += rest.front() == '#' ? 1 : -1;
        rest.remove_prefix(1);
    }
    std::int64_t octave = 4;
    rest.remove_prefix(readWhole(rest, octave));
    rest = withoutBlanks(rest);
    double cents = 0.0;
    rest.remove_prefix(readNumber(rest, cents));
    if (!rest.empty())
        return false;
    const double semitones = (static_cast<double>(octave) + 1.0) * 12.0 + cents * 0.01 + semitone;
    log2Hz = (semitones - 69.0) / 12.0 + log2HzOfA4;
    return true;
}

std::string formatNote(double semitones) {
    const auto note = static_cast<std::int64_t>(std::llround(semitones));
    const std::int64_t inOctave = ((note % 12) + 12) % 12;
    return std::string(noteNames[static_cast<std::size_t>(inOctave)]) + wholeText((note - inOctave) / 12 - 1);
}

std::string formatNoteWithCents(double semitones) {
    const double cents = std::round((semitones - std::round(semitones)) * 100.0);
    return formatNote(semitones) + " " + formatNumber(cents, "%+03d");
}
