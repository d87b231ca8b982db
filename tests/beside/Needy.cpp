// A library that needs another one.
extern "C" int ornBesideNumber();
extern "C" __attribute__((visibility("default"))) int ornNeedyNumber() { return ornBesideNumber(); }
