#include "wave/CombinedLevelSource.h"

#include <algorithm>

void CombinedLevelSource::setSource(std::size_t index, LevelSource* source) {
    sources.at(index) = source;
}

LevelSource::Detection CombinedLevelSource::getDetection() {
    for (LevelSource* source : sources)
        if (source != nullptr)
            return source->getDetection();
    return Detection::largest;
}

float CombinedLevelSource::level(Info info) {
    const bool largest = getDetection() == Detection::largest;
    bool found = false;
    float combined = -180.0f; // what meters show of silence
    for (LevelSource* source : sources) {
        if (source == nullptr)
            continue;
        const float each = source->level(info);
        combined = !found ? each : largest ? std::max(combined, each) : std::min(combined, each);
        found = true;
    }
    return combined;
}

void CombinedLevelSource::resetPeak() {
    for (LevelSource* source : sources)
        if (source != nullptr)
            source->resetPeak();
}

void CombinedLevelSource::releaseHold() {
    for (LevelSource* source : sources)
        if (source != nullptr)
            source->releaseHold();
}
