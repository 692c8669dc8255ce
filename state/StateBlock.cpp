#include "state/StateBlock.h"

#include "base/BinaryDataReader.h"
#include "base/BinaryDataWriter.h"

void StateBlock::write(BinaryDataWriter& writer, std::string_view signature) const {
    writer.writeHeader(signature, currentVersion);
    writer.writeString(presetName);
    writer.writeInt32(instanceId);
    writer.writeBool(automaticInstanceName);
    writer.writeString(instanceName);
    writer.writeBool(presetModified);
    writeCustomValues(writer, customValues);
}

bool StateBlock::read(BinaryDataReader& reader, std::string_view signature) {
    *this = StateBlock();
    if (reader.readHeader() != signature)
        return false;
    version = reader.version;
    presetName = reader.readString();
    instanceId = reader.readInt32();
    automaticInstanceName = reader.readBool();
    instanceName = reader.readString();
    if (version >= 2)
        presetModified = reader.readBool();
    if (version >= 3 && !readCustomValues(reader, customValues))
        return false;
    return reader.good();
}
