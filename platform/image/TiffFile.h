// SPDX-License-Identifier: MIT
// One TIFF file of an open image: its pages, and their blocks on demand. All functions may be called by
// several threads at once.
#pragma once

#include "platform/image/BlockCache.h"
#include "platform/image/InputFile.h"
#include "platform/image/Plane.h"
#include "platform/image/TiffDecoder.h"

#include <atomic>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace image {

using PlanePtr = std::shared_ptr<const Plane>;

// The file was changed under us: planes that were looked up before must be looked up again.
struct StalePlane {};

class TiffFile {
public:
    // Reads the chain of pages. Throws FormatError.
    explicit TiffFile(const std::filesystem::path& path);

    const std::vector<PageSummary>& pages() const { return chain.pages; }
    const std::string& damage() const { return chain.damage; } // why there are no more pages, or empty
    const TiffStructure& tags() const { return structure; }
    std::uint64_t size() const { return opened.size; } // bytes
    FileStamp stamp() const { return opened; }         // at the time of opening
    bool changed() const { return file.stamp() != opened; }

    // The plane whose directory is at the offset. The last is used again as long as the file does not change.
    PlanePtr plane(std::uint64_t directoryOffset, std::optional<SampleType> declared,
                   std::uint64_t firstByteShift = 0);

    // Reads and decodes a block of a plane of this file. Throws FormatError, or StalePlane when the file was
    // changed since the plane was looked up.
    BlockPtr load(const Plane& plane, int block);

    // Throws FormatError when blocks lie outside the file as it is now, or StalePlane as load() does.
    void requireComplete(const Plane& plane);

    // As requireComplete(), and throws FormatError when the first block cannot be decoded.
    void check(const Plane& plane);

private:
    struct PlaneKey {
        std::uint64_t offset, shift;
        friend bool operator==(const PlaneKey&, const PlaneKey&) = default;
    };
    struct PlaneKeyHash {
        std::size_t operator()(const PlaneKey& key) const { return key.offset * 31 + key.shift; }
    };

    struct Lease {
        std::unique_ptr<TiffDecoder> decoder;
        unsigned generation; // in which it was made
    };

    void refuseStale(const Plane& plane);
    void loadRows(const Plane& plane, int block, std::span<std::byte> out);
    void loadRawTile(const Plane& plane, int block, std::span<std::byte> out);
    void decode(const Plane& plane, int block, std::span<std::byte> out);
    void decodeStrips(TiffDecoder& decoder, const Plane& plane, int block, std::span<std::byte> out);
    void decodeRows(TiffDecoder& decoder, const Plane& plane, int block, std::span<std::byte> out);
    Lease takeDecoder(const Plane& plane, int block = 0);
    void giveDecoder(Lease lease);

    InputFile file;
    FileStamp opened;
    std::atomic<std::uint64_t> id; // unique in the process; a new one when the file has changed
    TiffStructure structure;
    PageChain chain;

    std::mutex mutex; // guards what follows
    FileStamp current;
    unsigned generation = 0; // counts changes of the file
    std::unordered_map<PlaneKey, PlanePtr, PlaneKeyHash> planes;
    std::unordered_set<PlaneKey, PlaneKeyHash> completePlanes; // that requireComplete() has passed
    std::size_t tableEntries = 0;                              // of the planes' block tables
    std::vector<std::unique_ptr<TiffDecoder>> idleDecoders;
};

} // namespace image
