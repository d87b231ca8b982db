// A library that tests load by its name.
extern "C" __attribute__((visibility("default"))) int ornBesideNumber() { return 93; }
