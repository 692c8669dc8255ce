#include "framework/zelk/ParameterHints.h"

constinit const std::string_view ParameterHints::used =
    "Says whether this band takes part at all. An unused band costs nothing and is not drawn; adding a band in the "
    "display takes the first unused one, deleting it sets it back to unused.";

constinit const std::string_view ParameterHints::enabled =
    "Switches the band off and on while it keeps all its settings. Use it to hear what a single band does, or automate "
    "it to let a correction work only where the material needs it.";

constinit const std::string_view ParameterHints::frequency =
    "The center of a bell, notch or band pass, or the corner of a shelf or cut, from 10 Hz to 30 kHz. You can type "
    "\"250\", \"1.5k\", or a note with an octave and cents such as \"A4\" or \"C#3 +15\".";

constinit const std::string_view ParameterHints::gain =
    "How much the band boosts or cuts, up to 30 dB either way. Cuts, notches and band passes have no gain. A band with "
    "a "
    "Dynamic Range moves away from this value as the signal demands, and returns to it.";

constinit const std::string_view ParameterHints::dynamicRange =
    "How far the signal may move the band's gain, and in which direction: a negative range pulls the gain down when "
    "the "
    "level in the band's region passes the threshold (compression), a positive one pushes it up (expansion). At 0 dB "
    "the band is static. Only bells, shelves and tilts can be dynamic.";

constinit const std::string_view ParameterHints::dynamicsEnabled =
    "Switches the dynamics of the band off and on while it keeps its range and threshold. The static gain stays.";

constinit const std::string_view ParameterHints::threshold =
    "The level in the band's own region above which its gain starts to move. \"Auto\" measures against the running "
    "level "
    "of the material instead, so that the amount of movement stays the same when the input gets louder or softer. Type "
    "a level in dB, or \"Auto\".";

constinit const std::string_view ParameterHints::q =
    "How narrow the band is. 1 is a broad, musical setting; go to 10 and more to take out a resonance, or below 0.5 to "
    "change the tone as a whole. For shelves and cuts, Q shapes the corner: above 1 it begins to overshoot.";

constinit const std::string_view ParameterHints::shape = "What the band does: Bell for boosts and cuts around a "
                                                         "frequency, shelves for everything below or above it, cuts to "
                                                         "remove lows or highs, Notch to take out a single tone, Band "
                                                         "Pass to keep only a region, Tilt Shelf and Flat Tilt to "
                                                         "turn the balance between lows and highs around a pivot.";

constinit const std::string_view ParameterHints::slope =
    "How steep the band is, from 6 dB per octave to Brickwall. Steep cuts ring more and shift phase further around the "
    "corner; choose Linear Phase when that gets in the way. With bells, a higher slope flattens the top and sharpens "
    "the "
    "sides.";

constinit const std::string_view ParameterHints::stereoPlacement =
    "Which part of a stereo signal the band works on: both channels, left or right alone, or the mid (what both share) "
    "or side (what they differ in). In the modes with latency, mixing left/right with mid/side bands doubles it.";

constinit const std::string_view ParameterHints::speakers =
    "In surround layouts: the loudspeakers that the band works on. Pairs include the height speakers at the same "
    "angle. "
    "\"All (excl. LFE)\" spares the low-frequency channel, which is what most corrections want.";

constinit const std::string_view ParameterHints::solo =
    "Plays only the part of the spectrum that this band acts on, so that you can find a resonance by ear. One band is "
    "soloed at a time; the effect of the band itself is not heard meanwhile.";

constinit const std::string_view ParameterHints::externalSideChain =
    "Lets the side chain input move the gain of this dynamic band instead of the signal itself: let the vocal push "
    "the guitars aside at 3 kHz, or the kick drum the bass. It needs a set threshold; with \"Auto\" the band always "
    "listens to its own signal.";

constinit const std::string_view ParameterHints::processingMode =
    "Zero Latency matches the magnitude of analog filters without any delay. Natural Phase matches their phase as "
    "well, "
    "for a short delay. Linear Phase leaves the phase alone, for parallel paths and mastering; it costs delay, and a "
    "little pre-ringing on steep bands.";

constinit const std::string_view ParameterHints::processingResolution =
    "The length of the Linear Phase filters. More resolution follows low and narrow bands more exactly but costs "
    "latency "
    "and spreads pre-ringing further: choose the lowest setting that shapes your lowest band well. The other modes are "
    "not affected.";

constinit const std::string_view ParameterHints::gainScale =
    "Scales the gains of all bands at once, dynamics included: 100% is the curve as drawn, 0% is flat, 200% doubles "
    "every "
    "boost and cut. Useful to ask for half of an EQ after an hour of listening.";

constinit const std::string_view ParameterHints::outputLevel =
    "The level behind all bands, from silence to +36 dB. Balance it so that bypass sounds equally loud: louder seems "
    "better even when it is not.";

constinit const std::string_view ParameterHints::outputPan =
    "The balance of the output: each side of the center attenuates the other channel and leaves the nearer one at full "
    "level. Type \"Left\" or \"Right\" to keep one channel, or both attenuations as \"-3/0\".";

constinit const std::string_view ParameterHints::outputPanMode =
    "Whether Output Pan balances left against right or mid against side. In Mid/Side it narrows or widens the stereo "
    "image.";

constinit const std::string_view ParameterHints::bypass = "Passes the input through, with the latency kept, so that "
                                                          "nothing moves in time. The change is a short crossfade and "
                                                          "safe to automate.";

constinit const std::string_view ParameterHints::outputInvertPhase =
    "Turns the polarity of the output over. Try it when the track is one of several microphones on a source and the "
    "lows "
    "vanish in the sum.";

constinit const std::string_view ParameterHints::autoGain =
    "Makes up for the loudness that the bands add or take, estimated from the shape of the curve. It does not follow "
    "the "
    "signal, so it never pumps.";

constinit const std::string_view ParameterHints::analyzerPre = "Shows the spectrum of the input, before all bands.";

constinit const std::string_view ParameterHints::analyzerPost =
    "Shows the spectrum of the output, after all bands. With Pre beside it, the space between the two is what the EQ "
    "does to this material.";

constinit const std::string_view ParameterHints::analyzerExternal =
    "A third spectrum behind your own: the side chain input, or the output of another instance in the session, to see "
    "where two tracks meet.";

constinit const std::string_view ParameterHints::analyzerRange =
    "The height of the analyzer's scale. 60 dB shows detail near the top; 120 dB shows noise floors and steep cuts.";

constinit const std::string_view ParameterHints::analyzerResolution =
    "The length of the analyzer's windows. High settings tell low notes apart but react more slowly; low settings "
    "follow "
    "transients.";

constinit const std::string_view ParameterHints::analyzerSpeed =
    "How fast the spectrum falls back. Slow speeds average the material, which helps to judge tonal balance; fast ones "
    "show single hits.";

constinit const std::string_view ParameterHints::analyzerTilt =
    "Tilts the drawn spectrum around 1 kHz, since music carries less energy towards the top. At 4.5 dB per octave a "
    "balanced mix appears roughly level. The sound is not touched.";

constinit const std::string_view ParameterHints::analyzerFreeze =
    "Keeps the highest level of each frequency instead of letting the spectrum fall, so that peaks and resonances "
    "collect over time.";

constinit const std::string_view ParameterHints::analyzerCollisions =
    "Marks the frequencies where the external spectrum and your own are strong at the same time, which is where one "
    "masks the other.";

constinit const std::string_view ParameterHints::spectrumGrab =
    "Lets you take hold of a peak: rest the mouse on the analyzer until the spectrum stands still, then drag a peak up "
    "or "
    "down to make a band of fitting frequency and width.";

constinit const std::string_view ParameterHints::displayRange =
    "The gain scale of the curve display: 3 dB for mastering moves, up to 30 dB for surgery. Only the picture changes.";

constinit const std::string_view ParameterHints::receiveMidi =
    "Enabled lets MIDI controllers move the parameters that they are assigned to. Disable it when the track carries "
    "controllers that are meant for something else.";

constinit const std::string_view ParameterHints::soloGain =
    "The level of a soloed band in dB, to make a quiet region audible or a loud one bearable while you search. It acts "
    "during solo only.";
