// What the help overlay says of each parameter. Bands share one text a kind.
// Threads: any; constant data.
#pragma once

#include <string_view>

struct ParameterHints {
    static const std::string_view used;
    static const std::string_view enabled;
    static const std::string_view frequency;
    static const std::string_view gain;
    static const std::string_view dynamicRange;
    static const std::string_view dynamicsEnabled;
    static const std::string_view threshold;
    static const std::string_view q;
    static const std::string_view shape;
    static const std::string_view slope;
    static const std::string_view stereoPlacement;
    static const std::string_view speakers;
    static const std::string_view solo;
    static const std::string_view externalSideChain;

    static const std::string_view processingMode;
    static const std::string_view processingResolution;
    static const std::string_view gainScale;
    static const std::string_view outputLevel;
    static const std::string_view outputPan;
    static const std::string_view outputPanMode;
    static const std::string_view bypass;
    static const std::string_view outputInvertPhase;
    static const std::string_view autoGain;

    static const std::string_view analyzerPre;
    static const std::string_view analyzerPost;
    static const std::string_view analyzerExternal;
    static const std::string_view analyzerRange;
    static const std::string_view analyzerResolution;
    static const std::string_view analyzerSpeed;
    static const std::string_view analyzerTilt;
    static const std::string_view analyzerFreeze;
    static const std::string_view analyzerCollisions;
    static const std::string_view spectrumGrab;

    static const std::string_view displayRange;
    static const std::string_view receiveMidi;
    static const std::string_view soloGain;
};
