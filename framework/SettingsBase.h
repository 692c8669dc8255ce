// Preferences that outlive an instance and belong to no preset. A change of any of them stores them all at once.
// Threads: main.
#pragma once

#include "base/Property.h"
#include "base/UpdatedObject.h"
#include "framework/Setting.h"
#include "framework/VersionInfo.h"

class SettingsBase : public PropertyOwner, public UpdatedObject {
public:
    explicit SettingsBase(const VersionInfo& whose) : product(whose) {}
    SettingsBase(const SettingsBase&) = delete;
    SettingsBase& operator=(const SettingsBase&) = delete;
    virtual ~SettingsBase() = default;

    // Passes every setting. A derived class calls its base first.
    virtual void serialize(SettingSerializer&) {}

    void propertyChanged(AbstractProperty& property) override;

    Property<bool> alive{this, false}; // changes are stored: not while the settings are built or read

protected:
    void update() override;

private:
    const VersionInfo product; // a copy: shared settings outlive the instance that made them
};
