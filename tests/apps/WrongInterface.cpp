// A translator of another time: nothing in it may be called but the number of its interface.

#include <cstdlib>

extern "C" __attribute__((visibility("default"))) int KOVATranslatorInterfaceNumber();
extern "C" __attribute__((visibility("default"))) void KOVATranslatorInitialize();

int KOVATranslatorInterfaceNumber() { return 99; }

void KOVATranslatorInitialize() { std::abort(); }
