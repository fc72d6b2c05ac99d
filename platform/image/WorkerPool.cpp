// SPDX-License-Identifier: MIT
#include "platform/image/WorkerPool.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace image {

namespace {

struct Job {
    const std::function<void(int)>& work;
    int count;
    std::atomic<int> next = 0;
    std::mutex mutex;
    std::exception_ptr error = {};

    Job(int items, const std::function<void(int)>& function) : work(function), count(items) {}

    void run()
    {
        try {
            for (int item = next++; item < count; item = next++)
                work(item);
        } catch (...) {
            next = count;
            const std::lock_guard lock(mutex);
            if (!error)
                error = std::current_exception();
        }
    }
};

class WorkerPool {
public:
    WorkerPool()
    {
        const unsigned cores = std::max(1u, std::thread::hardware_concurrency());
        for (unsigned i = 1; i < std::min(cores, 4u); ++i)
            std::thread(&WorkerPool::serve, this).detach();
    }

    void run(Job& job)
    {
        std::unique_lock lock(mutex);
        if (current) {
            lock.unlock();
            job.run();
            return;
        }
        current = &job;
        ++generation;
        lock.unlock();
        wake.notify_all();
        job.run();
        lock.lock();
        current = nullptr; // a worker that has not joined yet must not touch the job any more
        idle.wait(lock, [&] { return busy == 0; });
    }

private:
    void serve()
    {
        std::unique_lock lock(mutex);
        for (unsigned long seen = 0;;) {
            wake.wait(lock, [&] { return current && generation != seen; });
            seen = generation;
            Job* const job = current;
            ++busy;
            lock.unlock();
            job->run();
            lock.lock();
            if (--busy == 0)
                idle.notify_all();
        }
    }

    std::mutex mutex;
    std::condition_variable wake, idle;
    Job* current = nullptr;
    unsigned long generation = 0;
    int busy = 0; // workers inside the current job
};

} // namespace

void parallelFor(int count, const std::function<void(int)>& work)
{
    Job job(count, work);
    if (count <= 1) {
        job.run();
    } else {
        // Never destroyed: its threads live as long as the process.
        static WorkerPool* const pool = std::make_unique<WorkerPool>().release();
        pool->run(job);
    }
    if (job.error)
        std::rethrow_exception(job.error);
}

} // namespace image
