// SPDX-License-Identifier: MIT
// Decoded blocks (strips, tiles, runs of rows) of all open images, kept up to a limit; the least recently
// used go first. One cache per process; all functions may be called by several threads.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <span>
#include <unordered_map>

namespace image {

// Decoded samples in the machine's byte order; never changed once it is in the cache.
class Block {
public:
    explicit Block(std::size_t size) : data(std::make_unique_for_overwrite<std::byte[]>(size)), count(size) {}
    std::span<std::byte> bytes() { return {data.get(), count}; }
    const std::byte* first() const { return data.get(); }
    std::size_t size() const { return count; }

private:
    std::unique_ptr<std::byte[]> data;
    std::size_t count;
};

using BlockPtr = std::shared_ptr<const Block>;

struct BlockKey {
    std::uint64_t file = 0;      // TiffFile::id: another one when the file has changed
    std::uint64_t directory = 0; // offset of the page's directory
    std::uint64_t shift = 0;     // of planes that lie behind a single page
    std::uint64_t block = 0;
    friend bool operator==(const BlockKey&, const BlockKey&) = default;
};

struct BlockKeyHash {
    std::size_t operator()(const BlockKey& key) const
    {
        std::uint64_t hash = key.file;
        for (const std::uint64_t part : {key.directory, key.shift, key.block})
            hash = (hash ^ part) * 0x9e3779b97f4a7c15u + (hash >> 29);
        return static_cast<std::size_t>(hash ^ (hash >> 32));
    }
};

class BlockCache {
public:
    using Loader = std::function<BlockPtr()>;

    static BlockCache& instance();

    // The block, or nothing when it is not there (or still being loaded).
    BlockPtr find(const BlockKey& key);
    // The block; loads it when it is not there, after making room for its bytes. When two threads want the
    // same block one loads and the other waits. An exception of the loader passes through and leaves nothing
    // behind.
    BlockPtr get(const BlockKey& key, std::size_t size, const Loader& load);

    void setLimit(std::size_t bytes); // at once, also downwards
    std::size_t used() const;         // bytes

private:
    struct Entry {
        BlockKey key;
        BlockPtr block;   // null while its loader runs
        std::size_t size; // bytes
    };
    using Entries = std::list<Entry>; // most recently used first

    void trim(Entries::iterator keep);

    mutable std::mutex mutex;
    std::condition_variable loaded;
    Entries entries;
    std::unordered_map<BlockKey, Entries::iterator, BlockKeyHash> index;
    std::size_t bytes = 0, limit = 128u << 20;
};

} // namespace image
