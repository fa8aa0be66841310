// A plug-in: exported functions with C names, and nothing else visible.

#include <kovabase/KOVABase.h>

// [plugin]
#define PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))

PLUGIN_EXPORT void ShapeInitialize() { KOVAInfo::Printf("the plug-in is ready"); }

PLUGIN_EXPORT void ShapeFinalize() { KOVAInfo::Printf("the plug-in goes"); }

PLUGIN_EXPORT double ShapeArea(double width, double height) { return width * height; }
// [plugin]
