// The library of the component "Hollow", which is no component: it defines no offers.

extern "C" int AnotherRoutine() { return 1; }
