#include "framework/SettingsBase.h"

#include "framework/RegistryWriter.h"
#include "framework/SettingsKeys.h"

void SettingsBase::propertyChanged(AbstractProperty& property) {
    if (alive && &property != &alive)
        requestUpdate();
}

void SettingsBase::update() {
    UpdatedObject::update();
    RegistryWriter writer(productSettingsKey(product));
    serialize(writer);
}
