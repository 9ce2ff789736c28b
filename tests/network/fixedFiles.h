#pragma once

#include <string>

/// The files of fixed names through which the product reads the output of programs. While this
/// lives, no other process that has one uses them; they are gone at the beginning and at the end.
class FixedFiles {
public:
    FixedFiles();
    ~FixedFiles();
    FixedFiles(const FixedFiles&) = delete;
    FixedFiles& operator=(const FixedFiles&) = delete;

    void writeOutput(const std::string& text) const;
    void removeOutput() const;
    void writeFileSystemVersion(const std::string& text) const;

    /// Whether any of them is there.
    bool areThere() const;

private:
    void remove() const;

    int directory;
};
