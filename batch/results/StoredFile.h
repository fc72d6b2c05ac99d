// SPDX-License-Identifier: MIT
// Files that results are written to: one that grows, and one that appears under its name only when it is
// whole.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace batch {

// What ends a run; what() is a sentence for the user.
struct RunError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class StoredFile {
public:
    StoredFile() = default;
    // Appends to the file; makes it when it is not there, empties it when `anew`. Throws RunError.
    StoredFile(const std::filesystem::path& path, bool anew);
    ~StoredFile();
    StoredFile(StoredFile&& other) noexcept;
    StoredFile& operator=(StoredFile&& other) noexcept;

    // Throws RunError when not all of it could be written.
    void append(std::string_view bytes);
    std::uint64_t size() const { return bytesWritten; }
    // False when another process has the file locked.
    bool lock();

private:
    std::filesystem::path path;
    int descriptor = -1;
    std::uint64_t bytesWritten = 0;
};

// A file beside its final name; commit() gives it the name, else it goes away.
class StagedFile {
public:
    explicit StagedFile(const std::filesystem::path& path); // throws RunError
    ~StagedFile();
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    FILE* stream() { return file.get(); }
    const std::string& temporaryName() const { return temporary; }
    // Appends bytes of another file. Throws RunError.
    void copy(int descriptor, std::uint64_t begin, std::uint64_t end);
    // Throws RunError when not all of it could be written; the old file is unchanged then.
    void commit();

private:
    struct Close {
        void operator()(FILE* open) const { std::fclose(open); }
    };
    std::filesystem::path target;
    std::string temporary;
    std::unique_ptr<FILE, Close> file;
};

} // namespace batch
