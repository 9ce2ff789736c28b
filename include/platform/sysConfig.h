#pragma once

#pragma GCC visibility push(default)

/// The table of object-model entries; while one exists, the configuration can be queried.
class zuOMTable {
public:
    zuOMTable();
    ~zuOMTable();
    zuOMTable(const zuOMTable&) = delete;
    zuOMTable& operator=(const zuOMTable&) = delete;
};

class sysConfigOMApi {
public:
    /// Stores the version text of the system software, terminated; the buffer holds at least 300
    /// bytes. Returns 0 on success.
    static int sysConfigGetSwVersion(char* version);
};

#pragma GCC visibility pop
