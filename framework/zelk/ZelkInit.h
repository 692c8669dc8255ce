// Tells the framework what product this is.
// Threads: main.
#pragma once

class GenericPluginBase;
class GenericPluginInfo;

class ZelkInit {
public:
    explicit ZelkInit(GenericPluginInfo& info);   // for a description without an instance
    explicit ZelkInit(GenericPluginBase& plugin); // for one side of an instance
};
