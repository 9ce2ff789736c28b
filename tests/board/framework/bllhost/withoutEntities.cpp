// A library that registers nothing.

int aCallThatNobodyMakes() { return 0; }
