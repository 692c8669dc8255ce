// Which preset an instance holds, and whether it was changed since.
// Threads: main.
#pragma once

#include "base/NotifyEvent.h"

#include <string>
#include <string_view>

class CurrentPreset : public EventSender {
public:
    const std::string& name() const noexcept { return presetName; }
    const std::string& path() const noexcept { return presetPath; }
    bool modified() const noexcept { return isModified; }

    void setName(std::string_view wanted);
    void setPath(std::string_view wanted);
    void setModified(bool wanted);

    // Each fires when its value really changes.
    NotifyEvent nameChanged;
    NotifyEvent pathChanged;
    NotifyEvent modifiedChanged;

private:
    std::string presetName;
    std::string presetPath; // empty: of no file
    bool isModified = false;
};
