// SPDX-License-Identifier: MIT
#include "platform/image/BlockCache.h"

#include "platform/image/ImageFile.h"

namespace image {

BlockCache& BlockCache::instance()
{
    // Never destroyed: a reading thread may outlive the static objects of a program that calls exit().
    static BlockCache* const cache = std::make_unique<BlockCache>().release();
    return *cache;
}

void setBlockCacheLimit(std::size_t bytes)
{
    BlockCache::instance().setLimit(bytes);
}

BlockPtr BlockCache::find(const BlockKey& key)
{
    const std::lock_guard lock(mutex);
    const auto found = index.find(key);
    if (found == index.end() || !found->second->block)
        return nullptr;
    entries.splice(entries.begin(), entries, found->second);
    return found->second->block;
}

BlockPtr BlockCache::get(const BlockKey& key, std::size_t size, const Loader& load)
{
    std::unique_lock lock(mutex);
    for (auto found = index.find(key); found != index.end(); found = index.find(key)) {
        if (found->second->block) {
            entries.splice(entries.begin(), entries, found->second);
            return found->second->block;
        }
        loaded.wait(lock);
    }
    entries.push_front({key, nullptr, size});
    const auto mine = entries.begin();
    index.emplace(key, mine);
    bytes += size;
    trim(mine);
    lock.unlock();
    BlockPtr block;
    try {
        block = load();
    } catch (...) {
        lock.lock();
        bytes -= size;
        index.erase(key);
        entries.erase(mine);
        loaded.notify_all();
        throw;
    }
    lock.lock();
    mine->block = block;
    trim(mine); // blocks that were loading at the first trim may have come since, and can go now
    loaded.notify_all();
    return block;
}

// keep stays even when it alone is over the limit: several readers of one huge strip decode it once.
void BlockCache::trim(Entries::iterator keep)
{
    for (auto entry = entries.end(); bytes > limit && entry != entries.begin();) {
        --entry;
        if (!entry->block || entry == keep)
            continue;
        bytes -= entry->size;
        index.erase(entry->key);
        entry = entries.erase(entry);
    }
}

void BlockCache::setLimit(std::size_t newLimit)
{
    const std::lock_guard lock(mutex);
    limit = newLimit;
    trim(entries.end());
}

std::size_t BlockCache::used() const
{
    const std::lock_guard lock(mutex);
    return bytes;
}

} // namespace image
