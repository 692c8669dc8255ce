// Words for the features of a descriptor: one category at least, then any others. Own words are "namespace:word".
#pragma once

// Category.
inline constexpr char CLAP_PLUGIN_FEATURE_INSTRUMENT[] = "instrument";
inline constexpr char CLAP_PLUGIN_FEATURE_AUDIO_EFFECT[] = "audio-effect";
inline constexpr char CLAP_PLUGIN_FEATURE_NOTE_EFFECT[] = "note-effect";
inline constexpr char CLAP_PLUGIN_FEATURE_NOTE_DETECTOR[] = "note-detector";
inline constexpr char CLAP_PLUGIN_FEATURE_ANALYZER[] = "analyzer";

// Kind.
inline constexpr char CLAP_PLUGIN_FEATURE_SYNTHESIZER[] = "synthesizer";
inline constexpr char CLAP_PLUGIN_FEATURE_SAMPLER[] = "sampler";
inline constexpr char CLAP_PLUGIN_FEATURE_DRUM[] = "drum";
inline constexpr char CLAP_PLUGIN_FEATURE_DRUM_MACHINE[] = "drum-machine";
inline constexpr char CLAP_PLUGIN_FEATURE_FILTER[] = "filter";
inline constexpr char CLAP_PLUGIN_FEATURE_PHASER[] = "phaser";
inline constexpr char CLAP_PLUGIN_FEATURE_EQUALIZER[] = "equalizer";
inline constexpr char CLAP_PLUGIN_FEATURE_DEESSER[] = "de-esser";
inline constexpr char CLAP_PLUGIN_FEATURE_PHASE_VOCODER[] = "phase-vocoder";
inline constexpr char CLAP_PLUGIN_FEATURE_GRANULAR[] = "granular";
inline constexpr char CLAP_PLUGIN_FEATURE_FREQUENCY_SHIFTER[] = "frequency-shifter";
inline constexpr char CLAP_PLUGIN_FEATURE_PITCH_SHIFTER[] = "pitch-shifter";
inline constexpr char CLAP_PLUGIN_FEATURE_DISTORTION[] = "distortion";
inline constexpr char CLAP_PLUGIN_FEATURE_TRANSIENT_SHAPER[] = "transient-shaper";
inline constexpr char CLAP_PLUGIN_FEATURE_COMPRESSOR[] = "compressor";
inline constexpr char CLAP_PLUGIN_FEATURE_EXPANDER[] = "expander";
inline constexpr char CLAP_PLUGIN_FEATURE_GATE[] = "gate";
inline constexpr char CLAP_PLUGIN_FEATURE_LIMITER[] = "limiter";
inline constexpr char CLAP_PLUGIN_FEATURE_FLANGER[] = "flanger";
inline constexpr char CLAP_PLUGIN_FEATURE_CHORUS[] = "chorus";
inline constexpr char CLAP_PLUGIN_FEATURE_DELAY[] = "delay";
inline constexpr char CLAP_PLUGIN_FEATURE_REVERB[] = "reverb";
inline constexpr char CLAP_PLUGIN_FEATURE_TREMOLO[] = "tremolo";
inline constexpr char CLAP_PLUGIN_FEATURE_GLITCH[] = "glitch";
inline constexpr char CLAP_PLUGIN_FEATURE_UTILITY[] = "utility";
inline constexpr char CLAP_PLUGIN_FEATURE_PITCH_CORRECTION[] = "pitch-correction";
inline constexpr char CLAP_PLUGIN_FEATURE_RESTORATION[] = "restoration";
inline constexpr char CLAP_PLUGIN_FEATURE_MULTI_EFFECTS[] = "multi-effects";
inline constexpr char CLAP_PLUGIN_FEATURE_MIXING[] = "mixing";
inline constexpr char CLAP_PLUGIN_FEATURE_MASTERING[] = "mastering";

// Channels.
inline constexpr char CLAP_PLUGIN_FEATURE_MONO[] = "mono";
inline constexpr char CLAP_PLUGIN_FEATURE_STEREO[] = "stereo";
inline constexpr char CLAP_PLUGIN_FEATURE_SURROUND[] = "surround";
inline constexpr char CLAP_PLUGIN_FEATURE_AMBISONIC[] = "ambisonic";
