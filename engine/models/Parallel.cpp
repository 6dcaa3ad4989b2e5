#include "engine/models/Parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace engine {
namespace {

thread_local bool isInside = false;

// The calls of one InParallel. A helper may come to it when all is done, and then only finds that nothing is left.
class Calls {
public:
    Calls(std::size_t count, std::function<void(std::size_t)> const &work) : m_count(count), m_work(work) {}

    // Makes a call; after a failure only counts it. False when none was left.
    bool Next() {
        auto const call = m_next++;
        if (call >= m_count)
            return false;
        auto const outer = std::exchange(isInside, true);
        Guard([&] { m_work(call); });
        isInside = outer;
        ++m_done;
        m_done.notify_all();
        return true;
    }

    // Does something, unless there was a failure; what it throws is one.
    template <typename Something>
    void Guard(Something something) {
        if (m_failed)
            return;
        try {
            something();
        } catch (...) {
            std::lock_guard const lock(m_mutex);
            if (!m_failed)
                m_failure = std::current_exception();
            m_failed = true;
        }
    }

    double DonePart() const { return static_cast<double>(m_done) / static_cast<double>(m_count); }

    void WaitForAll() const {
        for (std::size_t done = m_done; done < m_count; done = m_done)
            m_done.wait(done);
        if (m_failure)
            std::rethrow_exception(m_failure);
    }

private:
    std::size_t m_count;
    std::function<void(std::size_t)> const &m_work;
    std::atomic<std::size_t> m_next = 0;
    std::atomic<std::size_t> m_done = 0;
    std::atomic<bool> m_failed = false;
    std::mutex m_mutex;
    std::exception_ptr m_failure;
};

} // namespace

void StartThread(std::function<void()> run) {
    std::thread(std::move(run)).detach();
}

void InParallel(std::size_t count, std::function<void(std::size_t)> const &work, Progress const &progress,
                void (*start)(std::function<void()>)) {
    auto const calls = std::make_shared<Calls>(count, work);
    auto const threads = isInside ? 1 : std::min<std::size_t>(count, std::thread::hardware_concurrency());
    // Not joined: a helper that has not begun when all is done, on a busy machine, is not waited for.
    try {
        for (std::size_t i = 1; i < threads; ++i)
            start([calls] {
                while (calls->Next()) {
                }
            });
    } catch (std::exception const &) {
        // Neither threads nor memory for more helpers. The caller must not unwind, since those that run use its data.
    }
    while (calls->Next())
        calls->Guard([&] { progress.Report(calls->DonePart()); });
    calls->WaitForAll();
    progress.Report(1);
}

} // namespace engine
