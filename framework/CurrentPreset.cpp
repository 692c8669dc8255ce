#include "framework/CurrentPreset.h"

void CurrentPreset::setName(std::string_view wanted) {
    if (presetName == wanted)
        return;
    presetName = wanted;
    nameChanged.fire(this);
}

void CurrentPreset::setPath(std::string_view wanted) {
    if (presetPath == wanted)
        return;
    presetPath = wanted;
    pathChanged.fire(this);
}

void CurrentPreset::setModified(bool wanted) {
    if (isModified == wanted)
        return;
    isModified = wanted;
    modifiedChanged.fire(this);
}
