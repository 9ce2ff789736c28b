#pragma once

#include <filesystem>

namespace varotest {

/// Keeps, for the files of one directory, what a loss of power would leave: their content at the
/// last time that they were synchronised with fsync(2) or fdatasync(2), without those that were
/// removed before the directory was. One at a time.
class SyncedImage {
public:
    SyncedImage(const std::filesystem::path& watched, const std::filesystem::path& image);
    ~SyncedImage();
    SyncedImage(const SyncedImage&) = delete;
    SyncedImage& operator=(const SyncedImage&) = delete;
};

}  // namespace varotest
