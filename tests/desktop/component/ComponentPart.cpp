// A library that the component needs and that lies beside it, where no other program looks.

extern "C" __declspec(dllexport) int PartOfTheComponent() { return 1; }
