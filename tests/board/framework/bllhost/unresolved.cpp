// A library that imports what no board supplies.

int aCallThatNoBoardSupplies();

const int value = aCallThatNoBoardSupplies();
